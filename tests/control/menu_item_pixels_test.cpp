// Menu items pixel by pixel, at two resolutions.
#include <windows.h>

#include <gtest/gtest.h>

#include "controls/menus/menu_item.h"
#include "controls/menus/menu_picture_gdi.h"
#include "tests/support/drawn_picture.h"
#include "tests/support/menu_pixels.h"
#include "win/gdi_surface.h"
#include "win/handles.h"

namespace qvx::test {
namespace {

using namespace qvx::menus;

constexpr COLORREF ground = RGB(236, 233, 216);
constexpr COLORREF ink = RGB(0, 0, 0);
constexpr COLORREF selected = RGB(0, 0, 160);
constexpr COLORREF frame = RGB(0, 0, 80);
constexpr COLORREF checkedGround = RGB(240, 230, 220);
constexpr COLORREF red = RGB(255, 0, 0);

class MenuItemPixels : public ::testing::TestWithParam<int> {
  protected:
    static int Dots() { return GetParam(); }
    static int At(int pixels) { return pixels * Dots() / 96; }
    static constexpr Size item{120, 22};  // at 96 dots per inch

    MenuItemPixels() {
        look.text = u"&Open";
        look.colors = {ground, ink, RGB(160, 160, 160), selected, frame, RGB(255, 255, 255), checkedGround};
    }
    void TakePicture() {
        look.picture = plain_.get();
        look.disabledPicture = &grey_;
    }
    PixelPicture Drawn() const {
        const Size size{At(item.width), At(item.height)};
        return PictureOf(size, [&](HDC dc) {
            {
                GdiSurface surface(dc, Dpi{Dots(), Dots()});
                DrawMenuItem(surface, {0, 0, size.width, size.height}, look);
            }
        });
    }
    // The picture's column at 96 dots per inch, where one character stands for a pixel of it, or for a square of pixels
    // that are all the same: "?" where they are not. `shift` is in the pixels of the resolution.
    static std::string Column(const PixelPicture& picture, int top, int bottom, int shift = 0) {
        std::string text;
        for (int y = top; y < bottom; ++y) {
            for (int x = 0; x < 21; ++x) {
                const COLORREF first = picture.At(At(x) + shift, At(y) + shift);
                char letter = first == ground          ? '.'
                              : first == ink           ? '#'
                              : first == red           ? 'r'
                              : first == checkedGround ? 'c'
                              : first == selected      ? 's'
                              : first == frame         ? 'f'
                                                       : 'o';
                for (int i = At(y); i < At(y + 1); ++i) {
                    for (int j = At(x); j < At(x + 1); ++j) {
                        if (picture.At(j + shift, i + shift) != first) letter = '?';
                    }
                }
                text += letter;
            }
            text += '\n';
        }
        return text;
    }
    // Marks of seven pixels stand in the middle of 22: half a pixel further where there are halves.
    static int MarkShift() { return Dots() / 96 - 1; }
    static int FirstInk(const PixelPicture& picture, COLORREF color) {
        for (int x = At(22); x < picture.size.width; ++x) {
            for (int y = 0; y < picture.size.height; ++y) {
                if (picture.At(x, y) != color) return x;
            }
        }
        return -1;
    }

    MenuItemLook look;

  private:
    std::shared_ptr<MenuPicture> plain_ = std::make_shared<MenuPicture>(SolidPicture({16, 16}, red).get());
    DisabledMenuPicture grey_{plain_};
};

INSTANTIATE_TEST_SUITE_P(Resolutions, MenuItemPixels, ::testing::Values(96, 192));

TEST_P(MenuItemPixels, PictureAndText) {
    TakePicture();
    const PixelPicture picture = Drawn();
    const std::string line = "...rrrrrrrrrrrrrrrr..\n";
    const std::string empty = ".....................\n";
    EXPECT_EQ(Column(picture, 2, 4), empty + line);
    EXPECT_EQ(Column(picture, 11, 12), line);
    EXPECT_EQ(Column(picture, 18, 20), line + empty);
    EXPECT_GE(FirstInk(picture, ground), At(27));
    EXPECT_LE(FirstInk(picture, ground), At(30));
    look.picture = look.disabledPicture = nullptr;
    EXPECT_EQ(FirstInk(Drawn(), ground), FirstInk(picture, ground)) << "labels begin at one place";
}

TEST_P(MenuItemPixels, CheckMark) {
    look.checked = true;
    EXPECT_EQ(Column(Drawn(), 6, 16, MarkShift()),
              ".....................\n"
              ".............#.......\n"
              "............##.......\n"
              ".......#...###.......\n"
              ".......##.###........\n"
              ".......#####.........\n"
              "........###..........\n"
              ".........#...........\n"
              ".....................\n"
              ".....................\n");
}

TEST_P(MenuItemPixels, Dot) {
    look.checked = look.radio = true;
    const PixelPicture picture = Drawn();
    // As wide as high, in the middle of the column, and round: at 192 dots its edge is finer.
    for (const Point inside : {Point{10, 10}, Point{8, 10}, Point{12, 10}, Point{10, 8}, Point{10, 12}}) {
        EXPECT_EQ(picture.At(At(inside.x) + MarkShift(), At(inside.y) + MarkShift()), ink)
            << inside.x << "," << inside.y;
    }
    for (const Point outside : {Point{7, 7}, Point{13, 7}, Point{7, 13}, Point{13, 13}, Point{6, 10}, Point{14, 10}}) {
        EXPECT_EQ(picture.At(At(outside.x) + MarkShift(), At(outside.y) + MarkShift()), ground)
            << outside.x << "," << outside.y;
    }
}

TEST_P(MenuItemPixels, Selected) {
    TakePicture();
    look.selected = true;
    const PixelPicture picture = Drawn();
    EXPECT_EQ(picture.At(0, 0), frame);
    EXPECT_EQ(picture.At(picture.size.width - 1, picture.size.height - 1), frame);
    EXPECT_EQ(picture.At(1, 1), selected);
    EXPECT_EQ(picture.At(At(119) - 1, At(20)), selected);
    EXPECT_EQ(picture.At(At(11), At(11)), red);
    EXPECT_GE(FirstInk(picture, selected), 0);
}

TEST_P(MenuItemPixels, CheckedWithPicture) {
    TakePicture();
    look.checked = true;
    const PixelPicture picture = Drawn();
    EXPECT_EQ(picture.At(At(3) - 1, At(11)), checkedGround) << "between picture and frame";
    EXPECT_EQ(picture.At(At(3), At(11)), red);
    EXPECT_EQ(picture.At(0, At(11)), ground);
    EXPECT_NE(picture.At(At(1), At(11)), ground) << "the frame";
    EXPECT_NE(picture.At(At(21) - 1, At(11)), ground);
    EXPECT_EQ(picture.At(At(21), At(11)), ground);
}

TEST_P(MenuItemPixels, Disabled) {
    TakePicture();
    look.disabled = true;
    // Half of the way from the ground to the grey that red is as bright as.
    const COLORREF grey = Drawn().At(At(11), At(11));
    constexpr int bright = 255 * 30 / 100;
    EXPECT_NEAR(GetRValue(grey), (GetRValue(ground) + bright) / 2, 3);
    EXPECT_NEAR(GetGValue(grey), (GetGValue(ground) + bright) / 2, 3);
    EXPECT_NEAR(GetBValue(grey), (GetBValue(ground) + bright) / 2, 3);
}

TEST_P(MenuItemPixels, FromRightToLeft) {
    TakePicture();
    look.rightToLeft = true;
    const PixelPicture picture = Drawn();
    EXPECT_EQ(picture.At(At(101), At(3)), red);
    EXPECT_EQ(picture.At(At(117) - 1, At(19) - 1), red);
    EXPECT_EQ(picture.At(At(117), At(11)), ground);
    EXPECT_EQ(picture.At(At(101) - 1, At(11)), ground);
}

}  // namespace
}  // namespace qvx::test
