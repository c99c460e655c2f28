// PkZip.
#pragma once

#include "archivers/command_line.h"
#include "archivers/files.h"

namespace qvx::archivers {

// Packs, reads back what was written, and only then lets the archive take its name. Throws ArchiveError; the old
// archive is as it was then, but for what DiskArchive says of several disks. `threads` is 1 or more.
void Pack(const PackOptions& options, Files& files, Console& console, unsigned threads);

}  // namespace qvx::archivers
