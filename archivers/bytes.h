// Numbers as an archive stores them: little-endian, at any address.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "archivers/exit_code.h"

namespace qvx::archivers {

using Bytes = std::vector<std::uint8_t>;
using ByteView = std::span<const std::uint8_t>;

class ByteWriter {
  public:
    ByteWriter& U16(std::uint64_t value) { return Number(value, 2); }
    ByteWriter& U32(std::uint64_t value) { return Number(value, 4); }
    ByteWriter& U64(std::uint64_t value) { return Number(value, 8); }
    ByteWriter& Raw(ByteView bytes) {
        bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
        return *this;
    }
    std::size_t Size() const { return bytes_.size(); }
    Bytes Take() { return std::move(bytes_); }

  private:
    ByteWriter& Number(std::uint64_t value, int count) {
        for (; count > 0; --count, value >>= 8) bytes_.push_back(static_cast<std::uint8_t>(value));
        return *this;
    }
    Bytes bytes_;
};

// Removes numbers from the front; throws ExitCode::damaged past the end.
class ByteReader {
  public:
    explicit ByteReader(ByteView bytes) : bytes_(bytes) {}
    std::uint16_t U16() { return static_cast<std::uint16_t>(Number(2)); }
    std::uint32_t U32() { return static_cast<std::uint32_t>(Number(4)); }
    std::uint64_t U64() { return Number(8); }
    // Removes `count` bytes from the front; the view is as long-lived as the underlying bytes.
    ByteView Raw(std::size_t count) {
        if (bytes_.size() < count) throw ArchiveError(ExitCode::damaged);
        const ByteView taken = bytes_.first(count);
        bytes_ = bytes_.subspan(count);
        return taken;
    }
    std::size_t Left() const { return bytes_.size(); }

  private:
    std::uint64_t Number(std::size_t count) {
        std::uint64_t value = 0;
        const ByteView taken = Raw(count);
        for (std::size_t i = count; i > 0; --i) value = value << 8 | taken[i - 1];
        return value;
    }
    ByteView bytes_;
};

inline bool IsAllZero(ByteView bytes) {
    // A block that equals itself moved by one byte, and begins with zero, is zero; the comparison is the library's
    // fastest loop.
    return bytes.empty() || (bytes[0] == 0 && std::equal(bytes.begin() + 1, bytes.end(), bytes.begin()));
}

}  // namespace qvx::archivers
