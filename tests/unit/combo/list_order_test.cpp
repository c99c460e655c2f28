#include "widgets/combo/list_order.h"

#include <gtest/gtest.h>

#include "common/widest_texts.h"

namespace qvx {
namespace {

const std::vector<Text> cities = {u"Hanover", u"Verona", u"Paris", u"Dover", u"over"};

TEST(ListOrder, EntriesThatMatchComeFirst) {
    struct Case {
        const char16_t* typed;
        int caret;
        bool deleting;
        std::vector<std::uint32_t> order;
        int matches;
        Completion completion;
    };
    const Case cases[] = {
        {u"OVER", 4, false, {4, 0, 3, 1, 2}, 3, {4, u"over", 4, 0}},
        {u"ver", 3, false, {1, 0, 3, 4, 2}, 4, {1, u"Verona", 3, 3}},
        {u"ver", 3, true, {1, 0, 3, 4, 2}, 4, {1, u"ver", 3, 0}},
        {u"ver", 1, false, {1, 0, 3, 4, 2}, 4, {1, u"ver", 1, 0}},
        {u"no", 2, false, {0, 1, 2, 3, 4}, 1, {0, u"no", 2, 0}},
        {u"dover", 5, true, {3, 0, 1, 2, 4}, 1, {3, u"dover", 5, 0}},
        {u"x", 1, false, {}, 0, {-1, u"x", 1, 0}},
        {u"", 0, true, {}, 0, {-1, u"", 0, 0}},
    };
    for (const Case& c : cases) {
        const ListOrder order = OrderByMatch(cities, c.typed);
        EXPECT_EQ(c.order, order.entries);
        EXPECT_EQ(c.matches, order.matches);
        EXPECT_EQ(c.completion, CompleteInOrder(cities, order, c.typed, c.caret, c.deleting));
        for (int entry = 0; entry < 5; ++entry) EXPECT_EQ(entry, order.EntryAt(order.PositionOf(entry)));
    }
    const ListOrder order = OrderByMatch(cities, u"ver");
    EXPECT_EQ(-1, order.EntryAt(5));
    EXPECT_EQ(-1, order.PositionOf(5));
}

TEST(WidestTexts, TheWidestOfManyIsFoundByItsCharacters) {
    int measured = 0;
    WidestTexts widest([&](TextView text) {
        ++measured;
        int width = 0;
        for (const char16_t c : text) width += c == u'i' ? 2 : c == u'\u4E00' ? 12 : 6;
        return width;
    });
    EXPECT_EQ(0, widest.Width());
    for (int i = 0; i < 5000; ++i) widest.Add(Text(static_cast<std::size_t>(i % 40), u'i'));
    widest.Add(u"\u4E00\u4E00\u4E00\u4E00\u4E00\u4E00\u4E00");
    for (int i = 0; i < 5000; ++i) widest.Add(u"aaaa");
    EXPECT_EQ(84, widest.Width());
    EXPECT_LT(measured, 100);
}

}  // namespace
}  // namespace qvx
