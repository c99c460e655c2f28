// The two standard dialogs the backup uses: which archive to restore, and which folder to put one into.
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

// The chosen file, given whether the dialog was confirmed and what it left in the buffer.
Text ChosenFile(bool confirmed, TextView buffer);

// `owner` is a window handle (HWND), as hosts give it. Both return an empty text when the user cancels. Windows only.
Text ShowOpenFile(std::intptr_t owner, TextView title, TextView initialName);
Text BrowseForFolder(std::intptr_t owner, TextView title);

}  // namespace qvx
