// Texts in Latin-1, one byte a character, and the same in UTF-16.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "common/text.h"

namespace qvx {

// Writes the low bytes of `size` units to `to`; returns whether all units were Latin-1, so that nothing was lost.
bool NarrowTo(const char16_t* units, std::size_t size, std::uint8_t* to);

// A bit for each character of a text that has at most 256: bit i % 64 of element i / 64 for character i.
using MarkBits = std::array<std::uint64_t, 4>;

// The same, and sets the bits of the units that are `mark`, a character of Latin-1. Neither the bytes nor the bits mean
// anything when it returns false.
bool NarrowMarking(TextView text, char16_t mark, std::uint8_t* to, MarkBits& marks);

// Writes `size` characters as UTF-16 units to `to`; returns where they end.
char16_t* WidenTo(const std::uint8_t* bytes, std::size_t size, char16_t* to);

}  // namespace qvx
