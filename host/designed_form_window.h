// A form under design: a picture of the form inside the designer's window, whose controls follow the blocks of the file
// and whose changes go back into them.
#pragma once

#include <windows.h>

#include <functional>
#include <vector>

#include "host/design_face_window.h"
#include "host/form_window.h"

namespace qvx::host {

class DesignedForm final : public HostForm {
  public:
    // The file is the designer's, and outlives the form as the other references do.
    DesignedForm(FormFile& file, const Options& options, Text folder, const ClassSource& classes, Reporter& reporter,
                 DesignHost& designer)
        : HostForm(file, options, std::move(folder), classes, reporter), designer_(designer) {}
    ~DesignedForm() override { Dispose(); }

    // Makes the window inside the designer's. Throws RunTimeError when the system refuses it.
    void Build(HWND parent);
    // Makes form and controls what the blocks say, as FormControls::Follow does.
    void FollowBlocks(const std::function<bool(const Block&)>& fresh = {});
    // Brings what has changed of a control, or (null) of the form itself, into its block. Throws RunTimeError when the
    // control cannot say.
    void Capture(FormControl* control, MergeMode mode = MergeMode::changes);
    // The form has been saved elsewhere.
    void SetFolder(Text folder) { folder_ = std::move(folder); }
    const DesignFace& Face() const { return face_; }

    // No script runs, and closing is the designer's.
    void Fire(const FormControl&, TextView, const std::vector<VARIANT*>&) override {}
    void AskToClose(int) override {}
    DesignHost* Designer() const override { return &designer_; }
    void NoteChange(FormControl* control) override;

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    DWORD WindowStyle() const override;
    void FollowResolution() override;
    void OnBackColor() override { face_.ForgetBackground(); }

  private:
    void FollowForm();

    DesignHost& designer_;
    DesignFace face_;
    Text formText_;       // what the form's block was when it was last the same as the form
    Text menuText_;       // the same of its menus
    bool quiet_ = false;  // the changes under way come from the blocks
};

}  // namespace qvx::host
