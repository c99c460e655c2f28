// The system's dialogs: choosing the archive to restore, the folder for a new one, and a picture.
#pragma once

#include <cstdint>

#include "common/text.h"

namespace qvx {

// The parameters of the system's open dialog.
struct OpenFileRequest {
    Text filter;            // pairs of description and pattern, each terminated by a NUL, and a final NUL
    Text file;              // the buffer: the initial name, then NULs to the end
    std::uint32_t maxFile;  // characters that the dialog may write into the buffer
    Text title;
    Text defaultExtension;
    std::uint32_t flags;
};

// For an archive. An initial name that is longer than the buffer is cut.
OpenFileRequest MakeOpenFileRequest(TextView title, TextView initialName);

// For a bitmap or an icon.
OpenFileRequest MakePictureFileRequest();

// Returns the chosen file, from the buffer that the dialog has filled; empty when the dialog was not confirmed.
Text ChosenFile(bool confirmed, TextView buffer);

// These functions show the dialogs and return an empty text when the user cancels. `owner` is a window handle (HWND),
// as hosts pass it. Windows only.
Text ShowOpenFile(std::intptr_t owner, TextView title, TextView initialName);
Text ShowOpenPicture(std::intptr_t owner);
Text BrowseForFolder(std::intptr_t owner, TextView title);

}  // namespace qvx
