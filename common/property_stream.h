// The format of a control's properties in a stream:
//
//     header     magic "QVXP", version (2 bytes, now 1), count of records (2 bytes), bytes of all records (4 bytes)
//     a record   characters in the key (2 bytes), key (UTF-16), kind (1 byte), bytes in the value (4 bytes), value
//
// Numbers are little-endian. Every length is checked against the available data before it is used.
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
// Streams that claim more are refused: no control has that much data, and hosts keep streams in memory.
constexpr std::uint32_t maximumSize = 64u << 20;

struct Header {
    std::uint16_t count = 0;
    std::uint32_t size = 0;  // of the records that follow
};

// Returns nullopt when the bytes are not a header of a known version. `bytes` has at least headerSize elements.
std::optional<Header> ReadHeader(std::span<const std::uint8_t> bytes);

// Returns the records after the header; `bytes` are exactly Header::size of them. The caller ignores records whose kind
// or key it does not know. A kind unknown here, and a value that no control can use (a number that is not finite, a
// font without a name), are read as no value. Returns nullopt when the bytes are inconsistent.
std::optional<std::vector<Record>> ReadRecords(const Header& header, std::span<const std::uint8_t> bytes);

// Writes header and records: at most 65,535 records, with keys of at most 65,535 characters. Throws std::length_error
// when they do not fit the format.
Bytes Write(std::span<const Record> records);

}  // namespace qvx::property_stream
