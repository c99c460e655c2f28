// ASCII characters: blanks, digits and the letters A to Z, as formats and names use them, independent of the system's
// language. Texts that users compare or sort go through common/text_compare.h instead.
#pragma once

#include "common/text.h"

namespace qvx {

constexpr bool IsBlank(char32_t c) { return c == U' ' || c == U'\t'; }
constexpr bool IsDigit(char32_t c) { return c >= U'0' && c <= U'9'; }

// These two return every other character unchanged.
constexpr char16_t LowerAscii(char16_t c) { return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c; }
constexpr char16_t UpperAscii(char16_t c) { return c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - 32) : c; }

constexpr bool IsAsciiLetter(char32_t c) { return (c >= U'A' && c <= U'Z') || (c >= U'a' && c <= U'z'); }

// Returns the value of a hexadecimal digit, or -1 for any other character.
constexpr int HexDigitValue(char32_t c) {
    if (IsDigit(c)) return static_cast<int>(c - U'0');
    const char32_t lower = c | 0x20;
    return lower >= U'a' && lower <= U'f' ? static_cast<int>(lower - U'a') + 10 : -1;
}

constexpr TextView TrimLeft(TextView text) {
    while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
    return text;
}
constexpr TextView TrimRight(TextView text) {
    while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
    return text;
}
// Removes the blanks on both sides.
constexpr TextView Trim(TextView text) { return TrimRight(TrimLeft(text)); }

}  // namespace qvx
