// The forms designer: menu, toolbox, the form in the middle, its properties at the right and a status line.
//
// The window puts the designer's parts together. What each of them does is in a header of its own: the form and its
// steps (design_session_window.h), what is shown (designer_views_window.h), mouse and keys (canvas_input_window.h),
// commands (designer_commands_window.h), files (designer_files_window.h) and running (form_run_window.h).
#pragma once

#include <windows.h>

#include "designer/canvas_input_window.h"
#include "designer/designer_commands_window.h"
#include "win/focus_memory.h"

namespace qvx::host::designer {

class DesignerWindow final : public Window, private SessionOwner {
  public:
    // `classes` and `reporter` outlive the designer.
    DesignerWindow(const Options& options, const ClassSource& classes, Reporter& reporter,
                   Questions questions = SystemQuestions());
    ~DesignerWindow() override;

    // Makes the window with a form from a file, or with a new one for an empty name. Throws RunTimeError and
    // FormFileError.
    void Open(const Text& path);
    void Show();
    // The message loop; returns when the designer has closed.
    void Run();
    // True when the designer has used the message.
    bool TranslateKey(const MSG& message);
    int ExitCode() const { return exitCode_; }

    DesignSession& Session() { return session_; }
    DesignerViews& Views() { return views_; }
    // False when the command is not available now, or has done nothing.
    bool Do(Command command);

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void OnFault() noexcept override;

  private:
    HWND FormParent() const override { return views_.FormParent(); }
    void OnSessionChanged() override;
    void OnFormClosing() override;
    void Reveal(const Rect& area) override { views_.Canvas().Reveal(area); }
    void OnFormResolution() override;
    void OnPictureWritten(const Text& path) override { pictures_.NoteWritten(path); }
    bool PostCapture() override;

    void AttachProperties();
    void OnClose();

    DesignerEnvironment environment_;
    Interaction interaction_;
    DesignSession session_{environment_, *this};
    KeptPictures pictures_{session_};
    DesignerViews views_{environment_, session_, interaction_};
    CommandMenus menus_{environment_, session_, interaction_};
    DesignerEditors editors_{environment_, session_, views_, pictures_};
    DesignerFiles files_{environment_, session_, pictures_};
    FormRun run_{environment_, session_};
    DesignerCommands commands_{{environment_, session_, views_, editors_, files_, run_, menus_, interaction_}};
    CanvasInput input_{session_, views_, editors_, interaction_};
    FocusMemory focus_;
    bool closed_ = false;
    int exitCode_ = 0;
};

}  // namespace qvx::host::designer
