// The encodings of text files, written and read.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "common/text.h"

namespace qvx::grid {

enum class TextEncoding { utf8, utf16, ansi };

// The system's code page for programs without Unicode.
struct AnsiCodePage {
    std::function<std::string(TextView)> encode;
    std::function<Text(std::string_view)> decode;
};

// Returns the encoding with that name: utf-8, utf-16 or ansi, regardless of case. Raises error 5 for any other.
TextEncoding EncodingNamed(TextView name);

// Returns the bytes with which a file in this encoding begins.
std::string ByteOrderMark(TextEncoding encoding);
// Whole characters only: a surrogate pair must not be divided between two calls. An unpaired surrogate becomes U+FFFD
// in UTF-8.
std::string Encode(TextView text, TextEncoding encoding, const AnsiCodePage& ansi);

// Returns the text of a file. A byte order mark decides; without one the named encoding does, and without a name the
// bytes are UTF-8 if they are valid UTF-8, else in the code page. Raises error 5 for bytes that the encoding does not
// have.
Text DecodeFile(std::string_view bytes, TextView encoding, const AnsiCodePage& ansi);

}  // namespace qvx::grid
