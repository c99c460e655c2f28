// Conversion between text and UTF-8 bytes.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "common/text.h"

namespace qvx {

// Strict decoding: nullopt for overlong forms, surrogates and anything beyond U+10FFFF, so that encoding the result
// gives the same bytes again.
std::optional<Text> DecodeUtf8(std::string_view bytes);

// An unpaired surrogate becomes U+FFFD.
std::string EncodeUtf8(TextView text);

}  // namespace qvx
