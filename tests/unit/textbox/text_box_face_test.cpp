// What a text box paints as a picture, as the list of drawing calls, and how high it is.
#include "widgets/textbox/text_box_face.h"

#include <gtest/gtest.h>

#include "tests/support/portable/failing_allocation.h"
#include "tests/support/portable/recording_surface.h"
#include "widgets/textbox/dropped_text.h"

namespace qvx {
namespace {

TEST(TextBoxFace, Pictures) {
    struct {
        TextBorder border;
        TextDepth depth;
        TextAlign align;
        bool enabled;
        int height;  // around a line of 13 pixels
        const char* expected;
    } const cases[] = {
        {TextBorder::fixedSingle, TextDepth::threeD, TextAlign::left, true, 19, R"(fill (0,0,80,19) &H80000005
edge (0,0,80,19) style 10 sides 15
clip (2,2,78,17)
text "a & b" (4,3,76,17) 8.25 &H80000008 format 2080
unclip
)"},
        {TextBorder::fixedSingle, TextDepth::flat, TextAlign::right, true, 17, R"(fill (0,0,80,17) &H80000005
frame (0,0,80,17) &H80000006
clip (1,1,79,16)
text "a & b" (3,2,77,16) 8.25 &H80000008 format 2082
unclip
)"},
        {TextBorder::none, TextDepth::threeD, TextAlign::center, false, 15, R"(fill (0,0,80,15) &H80000005
clip (0,0,80,15)
text "a & b" (2,1,78,15) 8.25 &H80000011 format 2081
unclip
)"},
    };
    for (const auto& c : cases) {
        TextBoxLook look;
        look.border = c.border;
        look.depth = c.depth;
        look.align = c.align;
        look.enabled = c.enabled;
        EXPECT_EQ(TextBoxHeight(look, 13), c.height);
        RecordingSurface surface;
        PaintTextBox(surface, look, u"a & b", {0, 0, 80, c.height});
        EXPECT_EQ(surface.Log(), c.expected);
        test::ExpectAllOrNothing(c.expected, [&] {
            RecordingSurface starved;
            PaintTextBox(starved, look, u"a & b", {0, 0, 80, c.height});
            return starved.Log();
        });
    }
}

TEST(DroppedText, FirstLineAsFarAsThereIsRoom) {
    struct {
        TextView dropped;
        std::size_t length, selected, maxLength;
        TextView taken;
    } const cases[] = {
        {u"one\r\ntwo", 0, 0, 0, u"one"},
        {u"abc", 5, 0, 7, u"ab"},
        {u"abc", 5, 5, 7, u"abc"},
        {u"abc", 7, 0, 7, u""},
        {u"abc", 9, 0, 7, u""},
        {u"\nabc", 0, 0, 0, u""},
        {u"a\xD83D\xDE00", 0, 0, 2, u"a"},
        {u"a\xD83D\xDE00", 0, 0, 3, u"a\xD83D\xDE00"},
    };
    for (const auto& c : cases) EXPECT_EQ(DroppedText(c.dropped, c.length, c.selected, c.maxLength), c.taken);
}

}  // namespace
}  // namespace qvx
