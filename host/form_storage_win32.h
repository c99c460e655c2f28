// Form files on the disk, as bytes.
#pragma once

#include <optional>
#include <string>

#include "common/text.h"

namespace qvx::host {

// The whole file; of one that is larger than a form may be, only so much that a reader sees it. Throws RunTimeError 53
// when it cannot be read.
std::string ReadFileBytes(const Text& path);
// The same, or nothing for a file that is not there or cannot be read.
std::optional<std::string> TryReadFileBytes(const Text& path);

// Writes beside the target first and replaces it then: neither a full disk nor a crash costs what is there. Throws
// RunTimeError 75 when that cannot be done.
void ReplaceFileBytes(const Text& path, const std::string& bytes);

Text FullPath(const Text& path);
// The folder of a full path, without the last separator.
Text FolderOf(const Text& path);

}  // namespace qvx::host
