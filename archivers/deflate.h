// Compression on all processors at once: the data is cut into blocks, each is deflated on its own with the preceding
// data as its dictionary, and the results are joined into one stream that every program can read.
#pragma once

#include <cstdint>
#include <functional>

#include "archivers/bytes.h"

namespace qvx::archivers {

// Fills the buffer, and returns less only at the end of the data.
using Source = std::function<std::size_t(std::span<std::uint8_t>)>;
using Sink = std::function<void(ByteView)>;

// Data must be larger than this to be worth more than one processor.
constexpr std::size_t deflateBlock = std::size_t{512} * 1024;

struct Packed {
    std::uint64_t size = 0;
    std::uint64_t packedSize = 0;
    std::uint32_t crc = 0;
};

// Compresses the data of `source`. Source and sink are called on this thread only, in order, and their exceptions are
// passed on. The memory used is a few blocks per thread, however much data there is. The result depends on the data
// alone, not on the number of threads (1 or more).
Packed Deflate(const Source& source, const Sink& sink, unsigned threads);

// Compresses at most deflateBlock bytes that are all in memory.
Bytes DeflateWhole(ByteView data);

}  // namespace qvx::archivers
