// PkunZip.
#pragma once

#include "archivers/command_line.h"
#include "archivers/files.h"

namespace qvx::archivers {

// What unfinished files are called.
extern const TextView unpackedSuffix;

// Unpacks every entry that can be: each file gets its name only when its data has proved to be right, and takes the
// place of a file of that name, read-only or not. An entry that is refused or damaged is reported and the others are
// unpacked; the result is then the first such entry's code. What concerns all of them is thrown as ArchiveError.
// Nothing is ever written outside the folder.
ExitCode Unpack(const UnpackOptions& options, Files& files, Console& console);

}  // namespace qvx::archivers
