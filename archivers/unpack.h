// PkunZip.
#pragma once

#include "archivers/command_line.h"
#include "archivers/files.h"

namespace qvx::archivers {

// The suffix of unfinished files.
extern const TextView unpackedSuffix;

// Unpacks every entry that can be unpacked: each file gets its name only when its data has been verified, and replaces
// a file of that name, read-only or not. An entry that is refused or damaged is reported and the others are unpacked;
// the result is then the first such entry's code. Errors that concern all entries are thrown as ArchiveError. Nothing
// is ever written outside the folder.
ExitCode Unpack(const UnpackOptions& options, Files& files, Console& console);

}  // namespace qvx::archivers
