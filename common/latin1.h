// Texts in Latin-1, one byte a character, and the same in UTF-16.
#pragma once

#include <cstddef>
#include <cstdint>

namespace qvx {

// Writes the low bytes of `size` units to `to`; returns whether all units were Latin-1, so that nothing was lost.
bool NarrowTo(const char16_t* units, std::size_t size, std::uint8_t* to);

// Writes `size` characters as UTF-16 units to `to`; returns where they end.
char16_t* WidenTo(const std::uint8_t* bytes, std::size_t size, char16_t* to);

}  // namespace qvx
