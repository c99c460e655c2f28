#include "archivers/checksum.h"

#include <zlib.h>

namespace qvx::archivers {

namespace {

constexpr std::size_t worthLooking = 65536;

}  // namespace

void Checksum::Add(ByteView bytes) {
    if (bytes.size() < worthLooking || !IsAllZero(bytes)) {
        value_ = static_cast<std::uint32_t>(crc32_z(value_, bytes.data(), bytes.size()));
        return;
    }
    if (zeroSize_ != bytes.size()) {
        zeroSize_ = bytes.size();
        zeroSum_ = static_cast<std::uint32_t>(crc32_z(0, bytes.data(), bytes.size()));
        zeroStep_ = static_cast<std::uint32_t>(crc32_combine_gen(static_cast<z_off_t>(bytes.size())));
    }
    value_ = static_cast<std::uint32_t>(crc32_combine_op(value_, zeroSum_, zeroStep_));
}

}  // namespace qvx::archivers
