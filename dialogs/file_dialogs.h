// The standard dialogs: which archive to restore, which folder to put one into, which picture to take.
#pragma once

#include <cstdint>

#include "common/text.h"

namespace qvx {

// What the open dialog is told; the dialog itself is the system's.
struct OpenFileRequest {
    Text filter;            // pairs of description and pattern, each closed by a NUL, and a NUL at the end
    Text file;              // the buffer: the initial name, then NULs up to 250 characters
    std::uint32_t maxFile;  // characters the dialog may write into the buffer
    Text title;
    Text defaultExtension;
    std::uint32_t flags;
};

// An initial name that is longer than the buffer is cut.
OpenFileRequest MakeOpenFileRequest(TextView title, TextView initialName);

// For a bitmap or an icon.
OpenFileRequest MakePictureFileRequest();

// The chosen file, given whether the dialog was confirmed and what it left in the buffer.
Text ChosenFile(bool confirmed, TextView buffer);

// `owner` is a window handle (HWND), as hosts give it. They return an empty text when the user cancels. Windows only.
Text ShowOpenFile(std::intptr_t owner, TextView title, TextView initialName);
Text ShowOpenPicture(std::intptr_t owner);
Text BrowseForFolder(std::intptr_t owner, TextView title);

}  // namespace qvx
