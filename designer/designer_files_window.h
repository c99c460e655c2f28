// The designer's form files: loading and saving, and the questions around both.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "designer/design_session_window.h"
#include "designer/kept_pictures_win32.h"

namespace qvx::host::designer {

class DesignerFiles {
  public:
    // All of these outlive it.
    DesignerFiles(const DesignerEnvironment& environment, DesignSession& session, KeptPictures& pictures)
        : environment_(environment), session_(session), pictures_(pictures) {}

    // A form from a file, or a new one for an empty path. Throws RunTimeError and FormFileError.
    void Load(const Text& path);
    // A form that the user chooses.
    void LoadChosen();
    bool Save();
    bool SaveAs();
    // Whether the form may go: it has been saved, or the user does without its changes.
    bool MayGo();
    // Before the designer closes, saves what the command line or the user wants saved. The exit code of the program;
    // nothing when the user keeps the designer open.
    std::optional<int> Finish();

  private:
    bool SaveTo(const Text& path);

    const DesignerEnvironment& environment_;
    DesignSession& session_;
    KeptPictures& pictures_;
    std::optional<std::string> onDisk_;  // the bytes that were last read from or written to the form's own file
};

}  // namespace qvx::host::designer
