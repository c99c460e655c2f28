// The colours of windows with a border: under which keys they are kept, and in which order they are painted.
#include "controls/decor/border_colors.h"

#include <gtest/gtest.h>

namespace qvx::decor {
namespace {

TEST(BorderColors, AreBlackAndPaleYellowUntilSet) {
    const BorderColors colors;
    EXPECT_EQ(colors.inner, 0u);
    EXPECT_EQ(colors.outer, 13695994u);
}

TEST(BorderColors, TheNarrowBandComesLast) {
    const auto bands = BorderBands({Rgb(1, 1, 1), Rgb(2, 2, 2)});
    EXPECT_EQ(bands[0], (BorderBand{Rgb(1, 1, 1), 3}));
    EXPECT_EQ(bands[1], (BorderBand{Rgb(2, 2, 2), 1}));
}

TEST(BorderColors, WindowsAreKeptByTheirDecimalHandles) {
    EXPECT_EQ(WindowKey(0), u"0_");
    EXPECT_EQ(WindowKey(66842), u"66842_");
    EXPECT_EQ(WindowKey(-2147483647 - 1), u"-2147483648_");
}

TEST(BorderColors, BelongToTheirWindowUntilItIsRemoved) {
    BorderTable table;
    EXPECT_TRUE(table.Empty());
    table.Set(1, {1, 2});
    table.Set(11, {3, 4});
    table.Set(1, {5, 6});
    EXPECT_EQ(table.Find(1), (BorderColors{5, 6}));
    EXPECT_EQ(table.Find(11), (BorderColors{3, 4}));
    EXPECT_EQ(table.Find(2), std::nullopt);
    table.Remove(2);
    table.Remove(1);
    EXPECT_EQ(table.Find(1), std::nullopt);
    EXPECT_FALSE(table.Empty());
    table.Remove(11);
    table.Remove(11);
    EXPECT_TRUE(table.Empty());
    table.Set(11, {});
    EXPECT_EQ(table.Find(11), BorderColors{});
}

}  // namespace
}  // namespace qvx::decor
