// The form in which a control's properties lie in a stream:
//
//     header     magic "QVXP", version (2 bytes, now 1), count of records (2 bytes), bytes of all records (4 bytes)
//     a record   characters in the key (2 bytes), key (UTF-16), kind (1 byte), bytes in the value (4 bytes), value
//
// Numbers are little-endian. Every length is checked against what is there before it is believed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "common/property_value.h"
#include "common/text.h"

namespace qvx::property_stream {

using Bytes = std::vector<std::uint8_t>;
using Record = std::pair<Text, PropertyValue>;

constexpr std::size_t headerSize = 12;
// Streams that claim more are refused: no control has that much to say, and hosts keep streams in memory.
constexpr std::uint32_t maximumSize = 64u << 20;

struct Header {
    std::uint16_t count = 0;
    std::uint32_t size = 0;  // of the records that follow
};

// Nothing when the bytes are no header of a version known here. `bytes` has at least headerSize elements.
std::optional<Header> ReadHeader(std::span<const std::uint8_t> bytes);

// The records behind the header; `bytes` are exactly Header::size of them. Records of a kind or with a key unknown to
// the caller are for the caller to pass over; a kind unknown here and a value that no
// control can use (a number that is not finite, a font without a name) read as no value. Nothing when the bytes
// contradict themselves.
std::optional<std::vector<Record>> ReadRecords(const Header& header, std::span<const std::uint8_t> bytes);

// Header and records. At most 65,535 records; keys of at most 65,535 characters. Throws std::length_error when they
// would not fit the format.
Bytes Write(std::span<const Record> records);

}  // namespace qvx::property_stream
