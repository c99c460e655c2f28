// Paths as the system's file calls take them, and what their failures become.
#pragma once

#include <windows.h>

#include "common/text.h"
#include "controls/backup/file_rules.h"
#include "win/handles.h"

namespace qvx::backup {

[[noreturn]] inline void ThrowFileError(DWORD code = GetLastError()) { throw FileError(code); }

// From the current folder on, with "\" throughout; the path itself where the system makes nothing of it. Error 52 for a
// text with a NUL in it, which the system would cut there.
Text FullPath(TextView path);
// For a call of the system: of any length.
Text SystemPath(TextView path);

// What the volume that a path is on, or would be on, is reached by.
Text VolumeRoot(const Text& fullPath);

// Empty where CreateFileW fails.
UniqueKernelObject OpenFile(const Text& systemPath, DWORD access, DWORD sharing, DWORD disposition, DWORD flags = 0);

}  // namespace qvx::backup
