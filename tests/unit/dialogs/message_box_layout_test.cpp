// The message box to the twip.
#include "dialogs/message_box_layout.h"

#include <gtest/gtest.h>

#include <string>

#include "common/keys.h"
#include "dialogs/message_box_icons.h"
#include "tests/support/error_of.h"
#include "tests/support/narrow.h"
#include "tests/support/portable/failing_allocation.h"

namespace qvx::dialogs {
namespace {

using test::Narrow;

// "left,top caption tab" of a visible button, "-" of a hidden one.
std::string Show(const ButtonPlace& button) {
    if (!button.visible) {
        EXPECT_EQ(button.tag, u"");
        return "-";
    }
    EXPECT_EQ(button.tag, u"1");
    return std::to_string(button.left) + "," + std::to_string(button.top) + " " + Narrow(button.caption) + " " +
           std::to_string(button.tabIndex);
}

TEST(MessageBoxLayout, SizesAndButtons) {
    struct {
        const char* name;
        int buttons;
        Size text;
        Size expected;
        const char* ok;
        const char* cancel;
    } const cases[] = {
        // Width (40 + 150 + 20) x 15, height 315 + (26 + 60) x 15; OK top 1605 - 315 - 150.
        {"one button", 1, {150, 26}, {3150, 1605}, "1177,1140 &OK 0", "-"},
        {"unknown codes show one button", 0, {150, 26}, {3150, 1605}, "1177,1140 &OK 0", "-"},
        {"yes and no", 2, {150, 26}, {3150, 1605}, "770,1140 &Yes 0", "1585,1140 &No 1"},
        {"6 is 2", 6, {150, 26}, {3150, 1605}, "770,1140 &Yes 0", "1585,1140 &No 1"},
        {"no has the focus", 10, {150, 26}, {3150, 1605}, "770,1140 &Yes 1", "1585,1140 &No 0"},
        {"OK and Cancel", 3, {150, 26}, {3150, 1605}, "770,1140 &OK 0", "1585,1140 &Cancel 1"},
        {"7 is 3", 7, {150, 26}, {3150, 1605}, "770,1140 &OK 0", "1585,1140 &Cancel 1"},
        {"Cancel has the focus", 11, {150, 26}, {3150, 1605}, "770,1140 &OK 1", "1585,1140 &Cancel 0"},
        // (40 + 46 + 20) x 15 = 1590 is not more than twice 795.
        {"two buttons, just too narrow", 2, {46, 13}, {1840, 1410}, "115,945 &Yes 0", "930,945 &No 1"},
        {"two buttons, just wide enough", 2, {47, 13}, {1605, 1410}, "-3,945 &Yes 0", "812,945 &No 1"},
        {"one button never gets narrower than 60 pixels", 1, {0, 0}, {900, 1215}, "52,750 &OK 0", "-"},
        {"odd width", 1, {148, 13}, {3120, 1410}, "1162,945 &OK 0", "-"},
    };
    for (const auto& c : cases) {
        const BoxLayout box = LayOut(c.buttons, c.text, Dpi{});
        EXPECT_EQ(box.size.width, c.expected.width) << c.name;
        EXPECT_EQ(box.size.height, c.expected.height) << c.name;
        EXPECT_EQ(Show(box.ok), c.ok) << c.name;
        EXPECT_EQ(Show(box.cancel), c.cancel) << c.name;
        EXPECT_EQ(box.text, (Rect{40, 30, 40 + c.text.width, 30 + c.text.height})) << c.name;
        EXPECT_EQ(box.caption, (Rect{0, 0, TwipsToPixels(c.expected.width, 96), 17})) << c.name;
    }
}

TEST(MessageBoxLayout, EverythingGrowsWithTheResolution) {
    struct {
        int dots;
        Size measured;
        Rect text;
        Rect caption;
        int corner;
    } const cases[] = {
        {144, {225, 39}, {60, 45, 285, 84}, {0, 0, 315, 26}, 30},
        {192, {300, 52}, {80, 60, 380, 112}, {0, 0, 420, 34}, 40},
    };
    for (const auto& c : cases) {
        const Dpi dpi{c.dots, c.dots};
        const BoxLayout box = LayOut(2, c.measured, dpi);
        EXPECT_EQ(96 * WrapWidth(dpi) / c.dots, WrapWidth(Dpi{})) << c.dots;
        EXPECT_EQ(box.text, c.text) << c.dots;
        EXPECT_EQ(box.size, (Size{3150, 1605})) << "the same twips at every resolution";
        EXPECT_EQ(box.caption, c.caption) << c.dots;
        EXPECT_EQ(box.corner, (Size{c.corner, c.corner})) << c.dots;
    }
    EXPECT_EQ(WrapWidth(Dpi{}), 321 - 40);
    EXPECT_EQ(textFormat, 272U);
    // Device pixels higher than wide: the width follows the vertical resolution.
    EXPECT_EQ(LayOut(1, {150, 26}, Dpi{96, 144}).size.width, 2100);
}

TEST(MessageBox, KeysAnswer) {
    struct {
        int key;
        int shift;
        bool cancelVisible;
        Answer expected;
    } const cases[] = {
        {'O', 0, false, Answer::ok},
        {'Y', 0, true, Answer::ok},
        {'C', 0, true, Answer::cancel},
        {'N', 0, false, Answer::cancel},
        {keys::escape, 0, false, Answer::ok},
        {keys::escape, 0, true, Answer::none},
        {'O', keys::shiftMask, false, Answer::none},
        {'X', 0, true, Answer::none},
        {keys::enter, 0, true, Answer::focused},
        {keys::enter, keys::controlMask, true, Answer::none},
        {keys::tab, 0, true, Answer::moveFocus},
        {keys::tab, keys::shiftMask, false, Answer::moveFocus},
        {keys::tab, keys::controlMask, true, Answer::none},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(AnswerForKey(c.key, c.shift, c.cancelVisible), c.expected) << c.key << " shift " << c.shift;
    }
}

TEST(MessageBox, PictureNumbersAndCaption) {
    for (const int number : {1, 9}) EXPECT_EQ(PictureNumber(number), number);
    for (const int other : {10, -1}) EXPECT_EQ(PictureNumber(other), 6);
    EXPECT_EQ(test::ErrorOf([] { PictureNumber(0); }), 35600) << "there is no picture 0";
    EXPECT_EQ(CaptionFor(u"Restore"), u"  Restore");
}

TEST(MessageBox, NeedsNoMemoryButItsOwn) {
    test::ExpectAllOrNothing("layout", [] { return LayOut(10, {150, 26}, Dpi{}).ok.caption; });
    test::ExpectAllOrNothing("caption", [] { return CaptionFor(u"A title that is long"); });
    test::ExpectAllOrNothing("icon", [] { return DrawIcon(1, 16).pixels; });
}

}  // namespace
}  // namespace qvx::dialogs
