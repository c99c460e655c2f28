// Packing, on all processors at once: the data is cut into blocks that are deflated each on its own, primed with what
// stands before it, and put together again to one stream that every program reads.
#pragma once

#include <cstdint>
#include <functional>

#include "archivers/bytes.h"

namespace qvx::archivers {

// Fills what it is given, and less only at the end of the data.
using Source = std::function<std::size_t(std::span<std::uint8_t>)>;
using Sink = std::function<void(ByteView)>;

constexpr std::size_t deflateBlock = std::size_t{512} * 1024;

struct Packed {
    std::uint64_t size = 0;
    std::uint64_t packedSize = 0;
    std::uint32_t crc = 0;
};

// Source and sink are called on this thread only, in order. Memory is a few blocks a thread, however much data there
// is. What source or sink throw comes out of here. The result depends on the data alone, not on the number of threads
// (1 or more).
Packed Deflate(const Source& source, const Sink& sink, unsigned threads);

}  // namespace qvx::archivers
