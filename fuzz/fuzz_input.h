// Common parts of fuzz targets: reading typed values from the input, and failing loudly.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

#include "common/text.h"

namespace qvx {

// Returns the bytes of an input from the front; zeros when it is used up.
class FuzzInput {
  public:
    FuzzInput(const std::uint8_t* data, std::size_t size) : at_(data), end_(data + size) {}

    std::size_t Left() const { return static_cast<std::size_t>(end_ - at_); }
    std::uint8_t Byte() { return at_ == end_ ? std::uint8_t{0} : *at_++; }
    std::uint16_t Word() {
        const std::uint16_t low = Byte();
        return static_cast<std::uint16_t>(low | Byte() << 8);
    }
    // Returns 0 to limit - 1; limit is 1 to 65536.
    std::size_t Below(std::size_t limit) { return Word() % limit; }

    // Returns the next bytes, at most `count`, as characters of one byte each.
    Text Latin(std::size_t count) {
        Text text;
        while (count-- > 0 && at_ != end_) text += static_cast<char16_t>(*at_++);
        return text;
    }
    // Returns all remaining bytes, two per character.
    Text RestWide() {
        Text text;
        while (Left() >= 2) text += static_cast<char16_t>(Word());
        return text;
    }
    Text RestLatin() { return Latin(Left()); }
    // In a block of exactly their size, so that a read past the end is detected.
    std::vector<std::uint8_t> RestBytes() { return {std::exchange(at_, end_), end_}; }

  private:
    const std::uint8_t* at_;
    const std::uint8_t* end_;
};

// What a target does with an input; it is called by the fuzzer's entry point in entry.cpp.
void CheckInput(FuzzInput& input);

// Ends the run as a crash does when a condition that must always hold does not.
inline void Require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

}  // namespace qvx
