#include "controls/grid/row_key.h"

#include <cstring>

#include "common/text_compare.h"

namespace qvx::grid {
namespace {

constexpr std::uint64_t everyByte = 0x0101010101010101;
constexpr std::uint64_t highBits = 0x80 * everyByte;

bool IsAscii(std::uint64_t bytes) { return (bytes & highBits) == 0; }

// Converts eight ASCII characters at once: bit 7 of each sum is set if its byte is at least "A", or after "Z".
std::uint64_t LowerAscii(std::uint64_t bytes) {
    const std::uint64_t fromA = bytes + (0x80 - 'A') * everyByte;
    const std::uint64_t behindZ = bytes + (0x80 - 'Z' - 1) * everyByte;
    return bytes | ((fromA & ~behindZ & highBits) >> 2);
}

// Hashes the folded characters as a stream of bytes, eight at a time: one byte for ASCII, four for every other. Where a
// text is split, and how it is stored, does not change the stream.
class FoldedHash {
  public:
    void AddEight(std::uint64_t bytes) {
        if (waiting_ == 0) {
            Mix(bytes);
            return;
        }
        Mix(rest_ | bytes << 8 * waiting_);
        rest_ = bytes >> (64 - 8 * waiting_);
    }
    // Adds fewer than eight bytes; the others are 0.
    void Add(std::uint64_t bytes, unsigned count) {
        rest_ |= bytes << 8 * waiting_;
        if (waiting_ + count >= 8) {
            Mix(rest_);
            rest_ = bytes >> (64 - 8 * waiting_);  // waiting_ > 0 here, because count < 8
            waiting_ -= 8;
        }
        waiting_ += count;
    }
    void AddFolded(char32_t character) {
        if (character < 0x80) {
            Add(character, 1);
        } else {
            Add(character | 0x80000000, 4);
        }
    }
    std::uint64_t Finish() {
        Mix(rest_);
        Mix(waiting_);  // makes zeros at the end count
        state_ ^= state_ >> 29;
        state_ *= 0xBF58476D1CE4E5B9;
        return state_ ^ state_ >> 32;
    }

  private:
    void Mix(std::uint64_t bytes) {
        state_ = (state_ ^ bytes) * 0x9E3779B97F4A7C15;
        state_ ^= state_ >> 32;
    }

    std::uint64_t state_ = 0x2545F4914F6CDD1D;
    std::uint64_t rest_ = 0;
    unsigned waiting_ = 0;  // bytes in rest_, fewer than eight
};

void AddLatin1(FoldedHash& hash, std::uint64_t bytes, unsigned count) {
    if (IsAscii(bytes)) {
        if (count == 8) {
            hash.AddEight(LowerAscii(bytes));
        } else {
            hash.Add(LowerAscii(bytes), count);
        }
        return;
    }
    for (; count > 0; --count, bytes >>= 8) hash.AddFolded(FoldCase(static_cast<char32_t>(bytes & 0xFF)));
}

// Adds the rest of a text in Latin-1. Takes a copy of the hash, which the loop before keeps in registers.
std::uint64_t FinishLatin1(FoldedHash hash, const char* at, std::size_t left) {
    std::uint64_t bytes = 0;
    for (; left >= 8; at += 8, left -= 8) {
        std::memcpy(&bytes, at, 8);
        AddLatin1(hash, bytes, 8);
    }
    if (left > 0) {
        bytes = 0;
        std::memcpy(&bytes, at, left);
        AddLatin1(hash, bytes, static_cast<unsigned>(left));
    }
    return hash.Finish();
}

}  // namespace

std::uint64_t HashOfKey(flexgrid::CellView key) noexcept {
    FoldedHash hash;
    if (!key.IsLatin1()) {
        for (TextView rest = key.Wide(); !rest.empty();) hash.AddFolded(TakeFolded(rest));
        return hash.Finish();
    }
    const char* at = key.Latin1().data();
    std::size_t left = key.Size();
    for (; left >= 8; at += 8, left -= 8) {
        std::uint64_t bytes = 0;
        std::memcpy(&bytes, at, 8);
        if (!IsAscii(bytes)) break;
        hash.AddEight(LowerAscii(bytes));
    }
    return FinishLatin1(hash, at, left);
}

bool EqualKeys(flexgrid::CellView first, flexgrid::CellView second) {
    if (first == second) return true;
    Text scratch1;
    Text scratch2;
    return EqualNoCase(first.AsWide(scratch1), second.AsWide(scratch2));
}

}  // namespace qvx::grid
