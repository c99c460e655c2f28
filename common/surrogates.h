// The two halves of a character outside the basic plane, in UTF-16.
#pragma once

namespace qvx {

constexpr bool IsHighSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xD800; }
constexpr bool IsLowSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xDC00; }

}  // namespace qvx
