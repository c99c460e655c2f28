// Texts as tests print and compare them.
#pragma once

#include <string>

#include "common/text.h"

namespace qvx::test {

// What is not ASCII shows as "?".
inline std::string Narrow(TextView text) {
    std::string out;
    for (const char16_t c : text) out.push_back(c < 0x80 ? static_cast<char>(c) : '?');
    return out;
}

}  // namespace qvx::test
