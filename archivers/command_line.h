// The command lines of the two programs.
#pragma once

#include <cstdint>
#include <vector>

#include "common/text.h"

namespace qvx::archivers {

extern const TextView packUsage;
extern const TextView unpackUsage;

// Returns the words after the program's own name. Double quotes enclose a word with blanks; a backslash is always an
// ordinary character, since no file name contains a quote: "C:\my folder\" is that folder, whatever follows.
std::vector<Text> SplitCommandLine(TextView line);

struct PackOptions {
    bool help = false;
    bool spans = false;          // -&
    std::uint64_t partSize = 0;  // -s: bytes per part, 0 for one file
    Text archive;
    std::vector<Text> files;  // may have wildcards in their names
};

struct UnpackOptions {
    bool help = false;
    Text archive;
    Text folder;  // empty for the current one
};

// Both throw ExitCode::usage.
PackOptions ParsePackOptions(const std::vector<Text>& words);
UnpackOptions ParseUnpackOptions(const std::vector<Text>& words);

}  // namespace qvx::archivers
