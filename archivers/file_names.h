// Names: of files, in archives, on command lines.
#pragma once

#include <optional>

#include "archivers/bytes.h"
#include "common/text.h"

namespace qvx::archivers {

// The part behind the last \, / or drive's colon.
TextView FileNameOf(TextView path);
// The part before it, with what ends it; empty for a bare name.
TextView FolderOf(TextView path);
// Puts a \ between them where there is none.
Text Joined(TextView folder, TextView name);

// The temporary's path: the name, cut so that names stay as short as file systems want them, and the suffix.
Text TemporaryPath(const Text& path, TextView suffix);

// The path of one part of a split archive: "name.z01" for part 0 of "name.zip".
Text SplitPartPath(const Text& archive, std::uint32_t part);

bool HasWildcard(TextView name);
// * stands for any characters and ? for one, without regard to case; *.* matches every name, as it always has.
bool MatchesWildcard(TextView pattern, TextView name);

// Whether one folder's file or folder may get this name: nothing that the system reads otherwise than as a plain name
// of that folder (devices, streams, wildcards, control characters, blanks or dots at its end), and 1 to 255 units long.
bool IsSafeComponent(TextView name);

// Whether a whole stored name is safe below a folder: safe components between single slashes, at most one at the end.
bool IsSafeName(TextView name);

// The name for the console: control characters, and what turns the direction of writing, become question marks.
Text Printable(TextView name);

// What an archive's name bytes say, by its oldest convention: code page 437.
Text DecodeCodePage437(ByteView bytes);

}  // namespace qvx::archivers
