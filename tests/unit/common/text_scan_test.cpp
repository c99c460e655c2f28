// The loops over several characters at a time do what loops over single ones do, at every size and place, and touch
// nothing outside: each text is in memory of exactly its size, so that the address sanitizer sees any other access.
#include "common/text_scan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "common/latin1.h"

namespace qvx {
namespace {

constexpr std::size_t longest = 40;

TEST(TextScan, FindsTheFirstOfItsCharactersAtEverySizeAndPlace) {
    const ScannedFor wanted(u'\t', u'\r', u'\u3042');
    for (std::size_t size = 0; size <= longest; ++size) {
        for (std::size_t first = 0; first <= size; ++first) {
            const auto units = std::make_unique<char16_t[]>(size);
            std::fill_n(units.get(), size, u'\u8009');  // has the low byte of a tab
            for (std::size_t i = first; i < size; i += 3) units[i] = i % 2 == 0 ? u'\t' : u'\u3042';
            const TextView text(units.get(), size);
            for (std::size_t from = 0; from <= size; ++from) {
                const auto expected = std::find_if(text.begin() + static_cast<std::ptrdiff_t>(from), text.end(),
                                                   [&](char16_t unit) { return wanted.Is(unit); });
                ASSERT_EQ(static_cast<std::size_t>(expected - text.begin()), wanted.Find(text, from))
                    << size << " " << first << " " << from;
            }
        }
    }
}

TEST(Latin1, IsNarrowedMarkedAndWidenedAtEverySizeAndSeesEveryWideCharacter) {
    MarkBits marks;
    for (std::size_t size = 0; size <= 64 * marks.size(); ++size) {
        const auto units = std::make_unique<char16_t[]>(size);
        for (std::size_t i = 0; i < size; ++i) units[i] = static_cast<char16_t>(0xFF - i % 7 * (i % 5));
        const TextView text(units.get(), size);
        const auto bytes = std::make_unique<std::uint8_t[]>(size);
        const auto again = std::make_unique<char16_t[]>(size);
        const auto isTheSame = [&] {
            return WidenTo(bytes.get(), size, again.get()) == again.get() + size && text == TextView(again.get(), size);
        };
        ASSERT_TRUE(NarrowTo(units.get(), size, bytes.get()) && isTheSame()) << size;
        std::fill_n(bytes.get(), size, std::uint8_t{0});
        ASSERT_TRUE(NarrowMarking(text, u'\u00FF', bytes.get(), marks) && isTheSame()) << size;
        for (std::size_t i = 0; i < 64 * marks.size(); ++i)
            ASSERT_EQ(i < size && text[i] == u'\u00FF', (marks[i / 64] >> i % 64 & 1) != 0) << size << " " << i;
        for (std::size_t i = 0; i < size; ++i) {
            const char16_t kept = std::exchange(units[i], i % 2 == 0 ? u'\u0100' : u'\uFF00');
            ASSERT_FALSE(NarrowTo(units.get(), size, bytes.get())) << size << " " << i;
            ASSERT_FALSE(NarrowMarking(text, u'\u00FF', bytes.get(), marks)) << size << " " << i;
            units[i] = kept;
        }
    }
}

}  // namespace
}  // namespace qvx
