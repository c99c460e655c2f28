// Names of files, on disks, in archives and on command lines.
#pragma once

#include <optional>

#include "archivers/bytes.h"
#include "common/text.h"

namespace qvx::archivers {

// Returns the part after the last \, / or drive's colon.
TextView FileNameOf(TextView path);
// Returns the part before it, including its last separator; empty for a bare name.
TextView FolderOf(TextView path);
// Joins both, with a \ in between if there is none.
Text Joined(TextView folder, TextView name);

// Returns the path of a temporary file: the name, cut to a length that file systems accept, and the suffix.
Text TemporaryPath(const Text& path, TextView suffix);

// Returns the path of one part of a split archive: "name.z01" for part 0 of "name.zip".
Text SplitPartPath(const Text& archive, std::uint32_t part);

bool HasWildcard(TextView name);
// Matches with * for any characters and ? for one, ignoring case; *.* matches every name, as it always has.
bool MatchesWildcard(TextView pattern, TextView name);

// Whether a file or folder may safely get this name: 1 to 255 UTF-16 units that the system takes for nothing but a
// plain name in its folder (no devices, streams, wildcards or control characters, and no blank or dot at the end).
bool IsSafeComponent(TextView name);

// Whether a whole stored name is safe below a folder: safe components between single slashes, with at most one slash at
// the end.
bool IsSafeName(TextView name);

// Returns the name for the console: control characters, and those that change the writing direction, become question
// marks.
Text Printable(TextView name);

// Decodes the bytes of a name in an archive by the oldest convention: code page 437.
Text DecodeCodePage437(ByteView bytes);

}  // namespace qvx::archivers
