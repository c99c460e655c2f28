#include "common/latin1.h"

#include <cstring>

namespace qvx {

namespace {

// Calls four(at) so that all places are covered, or one(at) for each where there are fewer than four. Most texts are as
// short as a word; the last four overlap those before.
template <class Four, class One>
void ByFours(std::size_t size, Four four, One one) {
    if (size < 4) {
        for (std::size_t at = 0; at < size; ++at) {
            one(at);
        }
        return;
    }
    for (std::size_t at = 4; at < size; at += 4) {
        four(at - 4);
    }
    four(size - 4);
}

}  // namespace

bool NarrowTo(const char16_t* units, std::size_t size, std::uint8_t* to) {
    std::uint64_t all = 0;
    const auto narrowFour = [&](std::size_t at) {
        std::uint64_t four = 0;
        std::memcpy(&four, units + at, sizeof four);
        all |= four;
        four &= 0x00FF00FF00FF00FF;
        four = (four | four >> 8) & 0x0000FFFF0000FFFF;
        const auto bytes = static_cast<std::uint32_t>(four | four >> 16);
        std::memcpy(to + at, &bytes, sizeof bytes);
    };
    ByFours(size, narrowFour, [&](std::size_t at) {
        all |= units[at];
        to[at] = static_cast<std::uint8_t>(units[at]);
    });
    return (all & 0xFF00FF00FF00FF00) == 0;
}

char16_t* WidenTo(const std::uint8_t* bytes, std::size_t size, char16_t* to) {
    const auto widenFour = [&](std::size_t at) {
        std::uint32_t four = 0;
        std::memcpy(&four, bytes + at, sizeof four);
        std::uint64_t units = (four | std::uint64_t{four} << 16) & 0x0000FFFF0000FFFF;
        units = (units | units << 8) & 0x00FF00FF00FF00FF;
        std::memcpy(to + at, &units, sizeof units);
    };
    ByFours(size, widenFour, [&](std::size_t at) { to[at] = bytes[at]; });
    return to + size;
}

}  // namespace qvx
