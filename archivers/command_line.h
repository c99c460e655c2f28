// The command lines of the two programs.
#pragma once

#include <cstdint>
#include <vector>

#include "common/text.h"

namespace qvx::archivers {

extern const TextView packUsage;
extern const TextView unpackUsage;

// The words behind the program's own name. Double quotes hold a word with blanks together; a backslash always stands
// for itself, since no file name has a quote in it: "C:\my folder\" is that folder, whatever follows it.
std::vector<Text> SplitCommandLine(TextView line);

struct PackOptions {
    bool help = false;
    bool spans = false;          // -&
    std::uint64_t partSize = 0;  // -s: bytes a part, 0 for one file
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
