// Finds characters in a text, sixteen at a time where the processor can.
#pragma once

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <bit>
#include <cstddef>

#include "common/text.h"

namespace qvx {

// Up to three characters that a text is searched for; one may be given more than once.
class ScannedFor {
  public:
    static constexpr std::size_t width = 16;  // characters that Among looks at

    constexpr ScannedFor(char16_t a, char16_t b, char16_t c) : a_(a), b_(b), c_(c) {}

    constexpr bool Is(char16_t unit) const { return unit == a_ || unit == b_ || unit == c_; }

    // Returns a bit for each of the sixteen units from `units` on, the lowest for the first: set where it is one of
    // these.
    unsigned Among(const char16_t* units) const {
#ifdef __SSE2__
        const auto* vectors = reinterpret_cast<const __m128i*>(units);
        const __m128i matches =
            _mm_packs_epi16(Matches(_mm_loadu_si128(vectors)), Matches(_mm_loadu_si128(vectors + 1)));
        return static_cast<unsigned>(_mm_movemask_epi8(matches));
#else
        unsigned bits = 0;
        for (std::size_t i = 0; i < width; ++i) {
            bits |= static_cast<unsigned>(Is(units[i])) << i;
        }
        return bits;
#endif
    }

    // Returns where the first of these is in the text from `at` on; the text's size if there is none.
    std::size_t Find(TextView text, std::size_t at) const {
        for (; at + width <= text.size(); at += width) {
            if (const unsigned found = Among(text.data() + at)) {
                return at + static_cast<std::size_t>(std::countr_zero(found));
            }
        }
        while (at < text.size() && !Is(text[at])) {
            ++at;
        }
        return at;
    }

  private:
#ifdef __SSE2__
    __m128i Matches(__m128i units) const {
        const auto equal = [&](char16_t wanted) {
            return _mm_cmpeq_epi16(units, _mm_set1_epi16(static_cast<short>(wanted)));
        };
        return _mm_or_si128(_mm_or_si128(equal(a_), equal(b_)), equal(c_));
    }
#endif

    char16_t a_;
    char16_t b_;
    char16_t c_;
};

}  // namespace qvx
