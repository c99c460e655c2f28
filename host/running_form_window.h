// A form at work: with its script, its menu bar and the keyboard, until it closes.
#pragma once

#include <windows.h>

#include <optional>
#include <vector>

#include "host/form_script_object.h"
#include "host/form_window.h"
#include "win/focus_memory.h"

namespace qvx::host {

// A base class, so that the file is there before the form reads it.
struct OwnFormFile {
    FormFile own;
};

class RunningForm final : private OwnFormFile, public HostForm {
  public:
    // `folder` is where the form's file is. All three references outlive the form.
    RunningForm(FormFile file, const Options& options, Text folder, const ClassSource& classes, Reporter& reporter);
    ~RunningForm() override;

    // Makes the window, its menus and controls; throws FormFileError, with the line of the control in question.
    void Build();
    // Runs the script's own code and Form_Load, then shows the form. False when the script does not even compile.
    bool Start(TextView scriptName, TextView source);
    // The message loop; returns when the form is gone.
    void Run();
    int ExitCode() const { return exitCode_; }

    void Fire(const FormControl& control, TextView event, const std::vector<VARIANT*>& arguments) override;
    void AskToClose(int code) override;
    // Writes the form, as it is now, to a file. Throws RunTimeError 75 when that cannot be done, and 91 when the form
    // has closed.
    void Save(const Text& path);

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    void OnCommand(WPARAM wParam, LPARAM lParam);
    void OnSize(WPARAM how, LPARAM size);
    void OnClose(int code);

    FormScript script_;
    FocusMemory focus_;
    bool looping_ = false;  // inside Run
    int exitCode_ = 0;
    std::optional<int> closing_;  // the exit code of the closing under way
};

}  // namespace qvx::host
