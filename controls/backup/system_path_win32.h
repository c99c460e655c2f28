// Paths in the form that the system's file calls accept, and the failures of those calls.
#pragma once

#include <windows.h>

#include "common/text.h"
#include "controls/backup/file_rules.h"
#include "win/handles.h"

namespace qvx::backup {

[[noreturn]] inline void ThrowFileError(DWORD code = GetLastError()) { throw FileError(code); }

// Returns the path resolved from the current folder, with "\" throughout; the path itself where the system cannot
// resolve it. Error 52 for a text with a NUL in it, where the system would cut the text.
Text FullPath(TextView path);
// Returns the path for a call of the system; it may be of any length.
Text SystemPath(TextView path);

// Returns the root of the volume that a path is on, or would be on.
Text VolumeRoot(const Text& fullPath);

// Empty when CreateFileW fails.
UniqueKernelObject OpenFile(const Text& systemPath, DWORD access, DWORD sharing, DWORD disposition, DWORD flags = 0);

}  // namespace qvx::backup
