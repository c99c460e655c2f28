// Texts in the form in which tests print and compare them.
#pragma once

#include <string>

#include "common/text.h"

namespace qvx::test {

// Returns a text with "?" for every character outside ASCII.
inline std::string Narrow(TextView text) {
    std::string out;
    for (const char16_t c : text) out.push_back(c < 0x80 ? static_cast<char>(c) : '?');
    return out;
}

}  // namespace qvx::test
