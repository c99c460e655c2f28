// Connection strings: KEY=VALUE;KEY={VALUE};...
#pragma once

#include <utility>
#include <vector>

#include "common/text.h"

namespace qvx::ado {

using ConnectionSettings = std::vector<std::pair<Text, Text>>;

// Returns the keys as they are written, without blanks around them; values without braces, in which "}}" means "}". A
// part that is not a pair is ignored.
ConnectionSettings ParseConnectionString(TextView text);

// Writes the settings in the same order; values that contain ";" or braces, and the names of drivers, are put in
// braces.
Text WriteConnectionString(const ConnectionSettings& settings);

}  // namespace qvx::ado
