// Form files on the disk, as bytes.
#pragma once

#include <optional>
#include <string>

#include "common/text.h"

namespace qvx::host {

// The whole file; of one that is larger than a form may be, just enough for a reader to notice. Throws RunTimeError 53
// when it cannot be read.
std::string ReadFileBytes(const Text& path);
// The same, or nothing for a file that does not exist or cannot be read.
std::optional<std::string> TryReadFileBytes(const Text& path);

// Replaces the file so that neither a full disk nor a loss of power destroys its contents. Throws RunTimeError 75 when
// it cannot be written.
void ReplaceFileBytes(const Text& path, const std::string& bytes);

// Adds a line to a log; an empty path is no log. The file is opened for every line and closed again, so that another
// program sees each line as soon as it is written. Throws RunTimeError 75.
void AppendLine(const Text& path, const Text& line);

Text FullPath(const Text& path);
// The folder of a full path, without the last separator.
Text FolderOf(const Text& path);

}  // namespace qvx::host
