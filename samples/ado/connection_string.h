// Connection strings: KEY=VALUE;KEY={VALUE};...
#pragma once

#include <utility>
#include <vector>

#include "common/text.h"

namespace qvx::ado {

using ConnectionSettings = std::vector<std::pair<Text, Text>>;

// Keys as they are written, without blanks around them; values without braces, in which "}}" stands for "}". What is
// no pair is left out.
ConnectionSettings ParseConnectionString(TextView text);

// In the same order; values with ";" or braces in them, and drivers' names, in braces.
Text WriteConnectionString(const ConnectionSettings& settings);

}  // namespace qvx::ado
