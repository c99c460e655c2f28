// What a menu item with a picture needs and paints, as the list of drawing calls.
#include "controls/menus/menu_item.h"

#include <gtest/gtest.h>

#include "tests/support/portable/recording_surface.h"

namespace qvx::menus {
namespace {

class SomePicture final : public Picture {
  public:
    explicit SomePicture(Size size) : size_(size) {}
    Size PixelSize(Dpi) const override { return size_; }

  private:
    Size size_;
};

const SomePicture large({48, 48});
const SomePicture grey({47, 47});

MenuItemLook Open() {
    MenuItemLook look;
    look.text = u"&Open\tCtrl+O";
    look.colors = {0xFFFFFF, 0x000000, 0x808080, 0xC00000, 0x400000, 0xEEEEEE, 0xDDDDDD};
    look.picture = &large;
    look.disabledPicture = &grey;
    return look;
}

// The calls that most items have in common.
const std::string atRest = "fill (0,40,120,62) &H00FFFFFF\n";
const std::string selectedGround = "fill (0,40,120,62) &H00C00000\n";
const std::string frameAround = "frame (0,40,120,62) &H00400000\n";
const std::string ownPicture = "picture 48x48 (3,43,19,59)\n";
const std::string greyPicture = "picture 47x47 (3,43,19,59)\n";

std::string Labels(const std::string& color) {
    return "text \"&Open\" (27,40,104,62) 8.25 &H00" + color + " format 36\ntext \"Ctrl+O\" (27,40,104,62) 8.25 &H00" +
           color + " format 2086\n";
}

struct Case {
    const char* name;
    void (*change)(MenuItemLook&);
    std::string expected;
};

void WithoutPicture(MenuItemLook& look) { look.picture = look.disabledPicture = nullptr; }

TEST(MenuItem, PaintsItsStates) {
    const Case cases[] = {
        {"at rest", [](MenuItemLook&) {}, atRest + ownPicture + Labels("000000")},
        {"selected", [](MenuItemLook& look) { look.selected = true; },
         selectedGround + frameAround + ownPicture + Labels("EEEEEE")},
        {"disabled", [](MenuItemLook& look) { look.disabled = true; }, atRest + greyPicture + Labels("808080")},
        {"disabled and selected, in colours that can be told apart",
         [](MenuItemLook& look) { look.disabled = look.selected = true; },
         selectedGround + frameAround + greyPicture + Labels("808080")},
        {"disabled and selected, in colours that cannot",
         [](MenuItemLook& look) {
             look.disabled = look.selected = true;
             look.colors.selected = 0x808080;
         },
         atRest + frameAround + greyPicture + Labels("808080")},
        {"checked", [](MenuItemLook& look) { look.checked = true; },
         atRest + "fill (1,41,21,61) &H00DDDDDD\nedge (1,41,21,61) style 2 sides 15\n" + ownPicture + Labels("000000")},
        {"checked and selected", [](MenuItemLook& look) { look.checked = look.selected = true; },
         selectedGround + frameAround + "edge (1,41,21,61) style 2 sides 15\n" + ownPicture + Labels("EEEEEE")},
        {"without a picture", &WithoutPicture, atRest + Labels("000000")},
        {"checked without a picture",
         [](MenuItemLook& look) {
             WithoutPicture(look);
             look.checked = true;
         },
         atRest + R"(fill (7,49,8,52) &H00000000
fill (8,50,9,53) &H00000000
fill (9,51,10,54) &H00000000
fill (10,50,11,53) &H00000000
fill (11,49,12,52) &H00000000
fill (12,48,13,51) &H00000000
fill (13,47,14,50) &H00000000
)" + Labels("000000")},
        {"one of several without a picture",
         [](MenuItemLook& look) {
             WithoutPicture(look);
             look.checked = look.radio = true;
         },
         atRest + R"(fill (9,47,12,48) &H00000000
fill (8,48,13,49) &H00000000
fill (8,49,13,50) &H00000000
fill (7,50,14,51) &H00000000
fill (8,51,13,52) &H00000000
fill (8,52,13,53) &H00000000
fill (9,53,12,54) &H00000000
)" + Labels("000000")},
        {"the default, with its access key hidden",
         [](MenuItemLook& look) { look.isDefault = look.hideAccessKeys = true; },
         atRest + ownPicture + R"(text "Open" (27,40,104,62) 8.25b &H00000000 format 2084
text "Ctrl+O" (27,40,104,62) 8.25b &H00000000 format 2086
)"},
        {"from right to left", [](MenuItemLook& look) { look.rightToLeft = true; },
         atRest + R"(picture 48x48 (101,43,117,59)
text "&Open" (16,40,93,62) 8.25 &H00000000 format 131110
text "Ctrl+O" (16,40,93,62) 8.25 &H00000000 format 133156
)"},
    };
    for (const Case& c : cases) {
        MenuItemLook look = Open();
        c.change(look);
        RecordingSurface surface;
        DrawMenuItem(surface, {0, 40, 120, 62}, look);
        EXPECT_EQ(c.expected, surface.Log()) << c.name;
    }
}

TEST(MenuItem, MarksGrowWithTheResolution) {
    const std::string marks[] = {"fill (2,2,42,42) &H00DDDDDD\nedge (2,2,42,42) style 2 sides 15\n",
                                 "fill (15,19,17,25) &H00000000\nfill (17,21,19,27) &H00000000\n",
                                 "fill (19,15,25,16) &H00000000\nfill (18,16,26,17) &H00000000\n"};
    for (int i = 0; i < 3; ++i) {
        MenuItemLook look = Open();
        look.checked = true;
        if (i > 0) WithoutPicture(look);
        look.radio = i == 2;
        RecordingSurface surface(Dpi{192, 192});
        DrawMenuItem(surface, {0, 0, 240, 44}, look);
        EXPECT_NE(surface.Log().find(marks[i]), std::string::npos) << surface.Log();
    }
}

// A little to either side of the least contrast, in all three parts of a colour.
TEST(MenuItem, IsPaintedAsSelectedAsLongAsItsGreyTextIsToldFromTheGround) {
    const struct {
        OleColor text, ground;
        bool told;
    } pairs[] = {{0x808080, 0xAEAEAE, false}, {0x808080, 0xB1B1B1, true},  {0x808080, 0x5A5A5A, false},
                 {0x808080, 0x565656, true},  {0x0000FF, 0xACACAC, false}, {0x0000FF, 0xB0B0B0, true},
                 {0x00FF00, 0xA7A7A7, false}, {0x00FF00, 0xA2A2A2, true},  {0xFF0000, 0x707070, false},
                 {0xFF0000, 0x757575, true},  {0x808080, 0x000000, true},  {0x000000, 0x090909, false}};
    for (const auto& [text, ground, told] : pairs) {
        MenuItemLook look = Open();
        look.selected = look.disabled = true;
        look.colors.disabledText = text;
        look.colors.selected = ground;
        RecordingSurface surface;
        DrawMenuItem(surface, {0, 40, 120, 62}, look);
        EXPECT_EQ(surface.Log().find("&H00FFFFFF") == std::string::npos, told) << std::hex << text << " on " << ground;
    }
}

TEST(MenuItem, IsAsLargeAsPictureAndTextNeed) {
    struct SizeCase {
        Text text;
        int dpi;
        Size expected;
    };
    const SizeCase sizes[] = {
        {u"&Open", 96, {22 + 5 + 30 + 16, 22}},
        {u"&Open\tCtrl+O", 96, {22 + 5 + 30 + 16 + 36 + 16, 22}},
        {u"&Open", 192, {2 * (22 + 5 + 30 + 16), 44}},
        {u"", 96, {22 + 5 + 16, 22}},
    };
    for (const auto& [text, dpi, expected] : sizes) {
        RecordingSurface surface({dpi, dpi});
        MenuItemLook look = Open();
        look.text = text;
        EXPECT_EQ(MeasureMenuItem(surface, look), expected);
        // The same without a picture: labels begin at one place.
        look.picture = look.disabledPicture = nullptr;
        EXPECT_EQ(MeasureMenuItem(surface, look), expected);
    }
    RecordingSurface surface;
    MenuItemLook look = Open();
    look.font.points = 24;
    EXPECT_GT(MeasureMenuItem(surface, look).height, 40) << "as high as the letters";
}

TEST(MenuItem, PictureGrowsWithTheResolution) {
    EXPECT_EQ(MenuPictureArea({0, 0, 120, 22}, {96, 96}, false), (Rect{3, 3, 19, 19}));
    EXPECT_EQ(MenuPictureArea({0, 0, 240, 44}, {192, 192}, false), (Rect{6, 6, 38, 38}));
    EXPECT_EQ(MenuPictureArea({0, 0, 120, 22}, {96, 96}, true), (Rect{101, 3, 117, 19}));
    EXPECT_EQ(MenuPictureArea({0, 0, 180, 33}, {144, 144}, false), (Rect{4, 4, 28, 28}));
}

}  // namespace
}  // namespace qvx::menus
