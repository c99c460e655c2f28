#include "common/text_direction.h"

#include <algorithm>
#include <optional>

#include "common/ascii.h"
#include "common/surrogates.h"

namespace qvx {
namespace {

constexpr bool Within(char32_t c, char32_t first, char32_t last) { return c >= first && c <= last; }

// The blocks of Hebrew, Arabic and related scripts, in the basic plane and in the next.
constexpr bool IsRightToLeftBlock(char32_t c) {
    return Within(c, 0x590, 0x8FF) || Within(c, 0xFB1D, 0xFDFF) || Within(c, 0xFE70, 0xFEFC) ||
           Within(c, 0x10800, 0x10FFF) || Within(c, 0x1E800, 0x1EFFF);
}

// Points, vowel signs, digits and punctuation in these blocks, which have no direction of their own.
constexpr bool IsWeakInBlock(char32_t c) {
    return Within(c, 0x591, 0x5BD) || c == 0x5BF || Within(c, 0x5C1, 0x5C2) || Within(c, 0x5C4, 0x5C5) || c == 0x5C7 ||
           Within(c, 0x600, 0x607) || Within(c, 0x609, 0x60A) || c == 0x60C || Within(c, 0x60E, 0x61A) ||
           Within(c, 0x64B, 0x66C) || c == 0x670 || Within(c, 0x6D6, 0x6E4) || Within(c, 0x6E7, 0x6ED) ||
           Within(c, 0x6F0, 0x6F9) || Within(c, 0x8D3, 0x8FF) || c == 0xFB1E || c == 0xFB29;
}

// Blanks, punctuation, signs and marks of the other blocks.
constexpr bool IsNeutral(char32_t c) {
    if (c < 0x80) return !IsAsciiLetter(c);
    return (c < 0xC0 && c != 0xAA && c != 0xB5 && c != 0xBA) || c == 0xD7 || c == 0xF7 || Within(c, 0x2B9, 0x2BA) ||
           Within(c, 0x2C2, 0x2CF) || Within(c, 0x300, 0x36F) || Within(c, 0x2000, 0x200D) ||
           Within(c, 0x2010, 0x2070) || Within(c, 0x2074, 0x207E) || Within(c, 0x2080, 0x208E) ||
           Within(c, 0x20A0, 0x20F0) || Within(c, 0x2190, 0x2335) || Within(c, 0x237B, 0x2394) ||
           Within(c, 0x2460, 0x249B) || Within(c, 0x24EA, 0x26AB) || Within(c, 0x26AD, 0x27FF) ||
           Within(c, 0x2900, 0x2BFF) || Within(c, 0x3000, 0x3004) || Within(c, 0x3008, 0x3020) ||
           Within(c, 0xFE00, 0xFE6F) || Within(c, 0xFF01, 0xFF20) || Within(c, 0x1F000, 0x1FAFF);
}

std::optional<bool> DirectionOf(char32_t c) {
    if (c == 0x200E || c == 0x200F) return c == 0x200F;
    if (IsRightToLeftBlock(c)) return IsWeakInBlock(c) ? std::nullopt : std::optional(true);
    return IsNeutral(c) ? std::nullopt : std::optional(false);
}

}  // namespace

bool ReadsRightToLeft(TextView text, bool otherwise) noexcept {
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t c = text[i];
        if (IsHighSurrogate(c) && i + 1 < text.size() && IsLowSurrogate(text[i + 1]))
            c = 0x10000 + ((c & 0x3FF) << 10) + (text[++i] & 0x3FFU);
        if (const auto direction = DirectionOf(c)) return *direction;
    }
    return otherwise;
}

bool LooksSameBothWays(TextView text) noexcept {
    if (text.empty()) return true;
    const char16_t last = text.back();
    const auto all = [&](auto test) { return std::all_of(text.begin(), text.end(), test); };
    if (IsAsciiLetter(text[0]))
        return (IsAsciiLetter(last) || IsDigit(last)) && all([](char16_t c) { return c < 0x80; });
    return IsDigit(text[0]) && IsDigit(last) && text.find(u",,") == TextView::npos &&
           text.find(u"..") == TextView::npos && all([](char16_t c) { return IsDigit(c) || c == u'.' || c == u','; });
}

}  // namespace qvx
