// The bytes of a text file and the text in them, each recoverable from the other without loss.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "common/text.h"

namespace qvx::host {

enum class Encoding {
    utf8,
    utf8WithMark,  // begins with the byte order mark EF BB BF
    windows1252,   // one byte a character; what older editors wrote
};

struct DecodedText {
    Encoding encoding = Encoding::utf8;
    Text text;
};

// Strict: nullopt for overlong forms, surrogates and anything beyond U+10FFFF, so that encoding the result gives the
// same bytes again.
std::optional<Text> DecodeUtf8(std::string_view bytes);

// An unpaired surrogate becomes U+FFFD.
std::string EncodeUtf8(TextView text);

// UTF-8 where the bytes are that, else Windows-1252 (whose five unassigned bytes stand for themselves).
DecodedText DecodeFile(std::string_view bytes);

// The exact reverse of DecodeFile. Text that Windows-1252 cannot hold is written as UTF-8 with a mark instead.
std::string EncodeFile(Encoding encoding, TextView text);

}  // namespace qvx::host
