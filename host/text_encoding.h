// The bytes of a text file and the text in them, each recoverable from the other without loss.
#pragma once

#include <string>
#include <string_view>

#include "common/text.h"
#include "common/utf8.h"

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

// UTF-8 when the bytes are valid, else Windows-1252, whose five unassigned bytes become the characters of their codes.
DecodedText DecodeFile(std::string_view bytes);

// The exact reverse of DecodeFile. Text that Windows-1252 cannot hold is written as UTF-8 with a mark instead.
std::string EncodeFile(Encoding encoding, TextView text);

}  // namespace qvx::host
