// The checksum of the files in a zip archive (CRC-32), calculated piece by piece, for components that need nothing else
// of the compression library.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace qvx {

class Crc32 {
  public:
    void Add(std::string_view bytes) {
        for (const char c : bytes) rest_ = table[(rest_ ^ static_cast<unsigned char>(c)) & 0xFF] ^ (rest_ >> 8);
    }
    std::uint32_t Value() const { return ~rest_; }

  private:
    static constexpr std::array<std::uint32_t, 256> table = [] {
        std::array<std::uint32_t, 256> values{};
        for (std::uint32_t i = 0; i < values.size(); ++i) {
            std::uint32_t value = i;
            for (int bit = 0; bit < 8; ++bit) value = (value >> 1) ^ ((value & 1) != 0 ? 0xEDB88320 : 0);
            values[i] = value;
        }
        return values;
    }();

    std::uint32_t rest_ = 0xFFFFFFFF;
};

}  // namespace qvx
