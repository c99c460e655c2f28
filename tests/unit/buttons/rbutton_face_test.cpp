// What a rounded two-state button paints, as the list of drawing calls, and the values behind it.
#include "controls/buttons/rbutton_face.h"

#include <gtest/gtest.h>

#include "tests/support/portable/recording_surface.h"

namespace qvx::buttons {
namespace {

RButtonLook Look() {
    RButtonLook look;
    look.caption = u"&Post";
    look.face = {0, 0, 100, 24};
    return look;
}

const std::string ground = "fill (0,0,100,24) &H8000000F\n";
const std::string label = "text \"&Post\" (0,0,100,24) 8.25 &H80000012 format 37\n";
const std::string outline = "roundrect (0,0,99,23) corner 10x10 &H00808080\n";

TEST(RButtonFace, EachState) {
    struct {
        const char* name;
        void (*change)(RButtonLook&);
        RButtonState state;
        bool active;
        std::string expected;
    } const cases[] = {
        {"under the mouse", [](RButtonLook&) {}, RButtonState::raised, false,
         ground + label + outline +
             "roundrect (0,0,100,24) corner 10x10 &H80000014\nroundrect (-1,-1,99,23) corner 10x10 &H80000015\n"},
        {"active without a focus rectangle", [](RButtonLook& look) { look.focusRect = false; }, RButtonState::idle,
         true, ground + label + outline},
        {"disabled", [](RButtonLook& look) { look.enabled = false; }, RButtonState::idle, false,
         ground + "text \"&Post\" (0,0,100,24) 8.25 &H80000010 format 37\n" + outline},
        {"held down and active, in colours of its own",
         [](RButtonLook& look) {
             look.foreColor = 1;
             look.backColor = 2;
             look.borderColor = 3;
             look.downTopColor = 4;
             look.downBottomColor = 5;
             look.maskColor = 6;
         },
         RButtonState::held, true,
         R"(fill (0,0,100,24) &H00000002
text "&Post" (2,2,100,24) 8.25 &H00000001 format 37
roundrect (0,0,99,23) corner 10x10 &H00000003
focus (34,6,66,19) &H00000006
roundrect (0,0,100,24) corner 10x10 &H00000004
roundrect (-1,-1,99,23) corner 10x10 &H00000005
)"},
        {"a script from right to left", [](RButtonLook& look) { look.caption = u"\u05E9\u05DC\u05D7!"; },
         RButtonState::idle, false,
         ground + "text \"\\u05E9\\u05DC\\u05D7!\" (0,0,100,24) 8.25 &H80000012 format 131109\n" + outline},
    };
    for (const auto& c : cases) {
        RButtonLook look = Look();
        c.change(look);
        RecordingSurface surface;
        DrawRButton(surface, look, c.state, c.active);
        EXPECT_EQ(surface.Log(), c.expected) << c.name;
    }
}

TEST(RButtonFace, DistancesFollowTheResolution) {
    RButtonLook look = Look();
    look.face = {0, 0, 200, 48};
    RecordingSurface surface(Dpi{192, 192});
    DrawRButton(surface, look, RButtonState::held, true);
    EXPECT_EQ(surface.Log(),
              R"(fill (0,0,200,48) &H8000000F
text "&Post" (4,4,200,48) 8.25 &H80000012 format 37
roundrect (0,0,199,47) corner 20x20 &H00808080
focus (69,11,131,37)
roundrect (0,0,200,48) corner 20x20 &H80000015
roundrect (-1,-1,199,47) corner 20x20 &H80000014
)");
}

TEST(RButtonFace, WhereTheFocusRectangleGoes) {
    struct {
        const char* name;
        Size face;
        int textWidth;
        double textHeight;
        Rect expected;
    } const cases[] = {
        {"even", {100, 24}, 30, 13, {34, 6, 66, 19}},  // 5.5 goes to the even 6
        {"half down to even", {101, 25}, 30, 14, {34, 6, 66, 20}},
        {"half up to even", {103, 27}, 30, 12, {36, 8, 68, 20}},
        {"a caption wider than the button", {40, 10}, 60, 13, {-11, -2, 51, 11}},
        {"no caption", {40, 20}, 0, 13, {19, 4, 21, 17}},
    };
    for (const auto& c : cases) EXPECT_EQ(RButtonFocusArea(c.face, c.textWidth, c.textHeight), c.expected) << c.name;
    // The height of the text is measured in the pixels of the horizontal resolution.
    RButtonLook look = Look();
    RecordingSurface surface(Dpi{96, 192});
    DrawRButton(surface, look, RButtonState::idle, true);
    EXPECT_NE(surface.Log().find("focus (34,6,66,19)"), std::string::npos) << surface.Log();
}

TEST(RButtonFace, DefaultCaption) {
    EXPECT_EQ(DefaultRButtonCaption(u"RButton12"), u"Button2");
    EXPECT_EQ(DefaultRButtonCaption(u""), u"Button");
}

}  // namespace
}  // namespace qvx::buttons
