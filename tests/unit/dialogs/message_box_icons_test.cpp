// The pictures at the sizes that resolutions ask for.
#include "dialogs/message_box_icons.h"

#include <gtest/gtest.h>

#include <set>

#include "dialogs/message_box_layout.h"
#include "dialogs/messages.h"

namespace qvx::dialogs {
namespace {

unsigned Alpha(std::uint32_t pixel) { return pixel >> 24; }

TEST(Icons, EachFillsItsFieldAndLeavesTheCornersFree) {
    for (const int size : {16, 20, 24, 32, 48}) {
        for (int number = 1; number <= design::iconCount; ++number) {
            const IconImage image = DrawIcon(number, size);
            ASSERT_EQ(image.pixels.size(), static_cast<std::size_t>(size * size));
            unsigned covered = 0;
            for (const std::uint32_t pixel : image.pixels) {
                covered += Alpha(pixel) == 255 ? 1 : 0;
                for (const int shift : {0, 8, 16}) {
                    EXPECT_LE(pixel >> shift & 0xFF, Alpha(pixel)) << "colours are multiplied by alpha";
                }
            }
            EXPECT_GT(covered, image.pixels.size() / 3) << number << " at " << size;
            EXPECT_EQ(Alpha(image.pixels.front()), 0U) << number << " at " << size;
            EXPECT_EQ(Alpha(image.pixels[static_cast<std::size_t>(size - 1)]), 0U) << number << " at " << size;
        }
    }
}

TEST(Icons, NoTwoAreAlike) {
    std::set<std::vector<std::uint32_t>> seen;
    for (int number = 1; number <= design::iconCount; ++number) {
        EXPECT_TRUE(seen.insert(DrawIcon(number, 16).pixels).second) << number;
    }
}

TEST(Icons, OnABackground) {
    const IconImage plain = DrawIcon(icon::error, 16);
    const IconImage image = OnBackground(plain, design::backColor);
    for (std::size_t i = 0; i < image.pixels.size(); ++i) {
        EXPECT_EQ(Alpha(image.pixels[i]), 255U);
        if (Alpha(plain.pixels[i]) == 255) {
            EXPECT_EQ(image.pixels[i], plain.pixels[i]);
        }
    }
    EXPECT_EQ(image.pixels.front(), 0xFFFCFBCBU) << "252, 251, 203 with the bytes in the picture's order";
}

}  // namespace
}  // namespace qvx::dialogs
