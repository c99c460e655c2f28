// The colours of a flat border, and in which order they are painted.
#include "controls/borders/border_colors.h"

#include <gtest/gtest.h>

namespace qvx::borders {
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

}  // namespace
}  // namespace qvx::borders
