#include "common/latin1.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <cassert>
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

bool NarrowMarking(TextView text, char16_t mark, std::uint8_t* to, MarkBits& marks) {
    assert(text.size() <= 64 * marks.size() && mark <= 0xFF);
    marks = {};
    const std::size_t size = text.size();
#ifdef __SSE2__
    constexpr std::size_t width = 16;
    if (size >= width) {
        __m128i all = _mm_setzero_si128();
        // Returns the bits of the sixteen units from `at` on.
        const auto narrow = [&](std::size_t at) {
            const auto* units = reinterpret_cast<const __m128i*>(text.data() + at);
            const __m128i low = _mm_loadu_si128(units);
            const __m128i high = _mm_loadu_si128(units + 1);
            all = _mm_or_si128(all, _mm_or_si128(low, high));
            const __m128i bytes = _mm_packus_epi16(low, high);
            _mm_storeu_si128(reinterpret_cast<__m128i*>(to + at), bytes);
            const __m128i marked = _mm_cmpeq_epi8(bytes, _mm_set1_epi8(static_cast<char>(mark)));
            return std::uint64_t{static_cast<unsigned>(_mm_movemask_epi8(marked))};
        };
        std::size_t at = 0;
        for (; at + width <= size; at += width) {
            marks[at / 64] |= narrow(at) << at % 64;
        }
        if (at < size) {
            // The last sixteen overlap those before.
            marks[at / 64] |= narrow(size - width) >> (at + width - size) << at % 64;
        }
        const __m128i wide = _mm_andnot_si128(_mm_set1_epi16(0xFF), all);
        return _mm_movemask_epi8(_mm_cmpeq_epi16(wide, _mm_setzero_si128())) == 0xFFFF;
    }
#endif
    for (std::size_t at = 0; at < size; ++at) {
        marks[at / 64] |= std::uint64_t{text[at] == mark} << at % 64;
    }
    return NarrowTo(text.data(), size, to);
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
