// The checksum that an archive stores for each file (CRC-32), calculated piece by piece.
#pragma once

#include "archivers/bytes.h"

namespace qvx::archivers {

// Long runs of zeros, as in files that consist mostly of holes, cost next to nothing.
class Checksum {
  public:
    void Add(ByteView bytes);
    std::uint32_t Value() const { return value_; }

  private:
    std::uint32_t value_ = 0;
    // Size of the last piece that was all zeros.
    std::size_t zeroSize_ = 0;
    std::uint32_t zeroSum_ = 0;
    std::uint32_t zeroStep_ = 0;
};

}  // namespace qvx::archivers
