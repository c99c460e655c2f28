// What the system is told and asked: key strokes, the short date pattern.
#include <gtest/gtest.h>

#include "common/key_strokes.h"
#include "common/locale.h"

namespace qvx {
namespace {

TEST(SendKey, StrokesInOrder) {
    using Strokes = std::vector<KeyStroke>;
    EXPECT_EQ(KeyStrokes(9, 0), (Strokes{{9, false}, {9, true}}));
    EXPECT_EQ(KeyStrokes(9, 16), (Strokes{{16, false}, {9, false}, {9, true}, {16, true}}));
    EXPECT_EQ(KeyStrokes(0x109, 0), (Strokes{{9, false}, {9, true}})) << "a key is one byte";
}

TEST(ShortDatePattern, OrderAndSeparator) {
    struct {
        const char16_t* pattern;
        ShortDateOrder order;
        const char16_t* separator;
    } const cases[] = {
        {u"M/d/yyyy", ShortDateOrder::monthDayYear, u"/"},      {u"dd.MM.yyyy", ShortDateOrder::dayMonthYear, u"."},
        {u"yyyy-MM-dd", ShortDateOrder::yearMonthDay, u"-"},    {u"d. M. yyyy", ShortDateOrder::dayMonthYear, u"."},
        {u"gg yyyy/MM/dd", ShortDateOrder::yearMonthDay, u"/"}, {u"dd'-'MM'-'yy", ShortDateOrder::dayMonthYear, u"-"},
        {u"d MMM yyyy", ShortDateOrder::dayMonthYear, u"/"},    {u"", ShortDateOrder::dayMonthYear, u"/"},
        {u"MM yyyy", ShortDateOrder::dayMonthYear, u"/"},
    };
    for (const auto& c : cases) {
        const DateSettings settings = DateSettingsOf(c.pattern, 2024);
        EXPECT_EQ(settings.order, c.order)
            << std::string(c.pattern, c.pattern + std::char_traits<char16_t>::length(c.pattern));
        EXPECT_EQ(settings.separator, c.separator);
        EXPECT_EQ(settings.currentYear, 2024);
    }
}

}  // namespace
}  // namespace qvx
