// PkZip.
#pragma once

#include "archivers/command_line.h"
#include "archivers/files.h"

namespace qvx::archivers {

// Packs, reads back what was written, and only then gives the archive its name. Throws ArchiveError; the old archive is
// then unchanged, except for the several disks described at DiskArchive. `threads` is 1 or more.
void Pack(const PackOptions& options, Files& files, Console& console, unsigned threads);

}  // namespace qvx::archivers
