// What a button paints, as the list of drawing calls.
#include "widgets/button/button_face.h"

#include <gtest/gtest.h>

#include "tests/support/portable/recording_surface.h"

namespace qvx::buttons {
namespace {

const std::string ground = "fill (0,0,100,24) &H8000000F\n";
const std::string label = "text \"&Save\" (0,0,100,24) 8.25 &H80000012 format 37\n";
const std::string disabledLabel =
    "text \"&Save\" (1,1,101,25) 8.25 &H80000014 format 37\ntext \"&Save\" (0,0,100,24) 8.25 &H80000010 format 37\n";
const std::string pressedLabel = "text \"&Save\" (1,1,101,25) 8.25 &H80000012 format 37\n";
const std::string raised = "edge (0,0,100,24) style 4 sides 15\n";
const std::string higher = "edge (0,0,100,24) style 5 sides 15\n";
const std::string sunken = "edge (0,0,100,24) style 2 sides 15\n";
const std::string focus = "focus (3,3,97,21)\n";

struct Case {
    const char* name;
    void (*change)(ButtonLook&);
    int state;
    bool focused;
    std::string expected;
};

// What the pictures of buttons do not show, and the calls by which they are drawn.
const Case cases[] = {
    {"at rest, focused", [](ButtonLook&) {}, 0, true, ground + label + raised + focus},
    {"no focus rectangle wanted", [](ButtonLook& look) { look.focusRect = false; }, 0, true, ground + label + raised},
    {"flat with a drop-down",
     [](ButtonLook& look) {
         look.behavior = Style::flatHeavy;
         look.dropDown = true;
         look.borderColor = Rgb(1, 2, 3);
         look.backColor = Rgb(255, 255, 255);
         look.foreColor = Rgb(0, 0, 255);
     },
     0, false,
     R"(fill (0,0,100,24) &H00FFFFFF
text "&Save" (0,0,100,24) 8.25 &H00FF0000 format 37
control (85,0,98,24) kind 5 state 16
frame (0,0,100,24) &H00030201
)"},
    {"disabled is embossed and shows no focus", [](ButtonLook& look) { look.dropDown = true, look.enabled = false; }, 0,
     true, ground + disabledLabel + "control (85,0,98,24) kind 5 state 272\n" + raised},
    {"hot, simple raise", [](ButtonLook& look) { look.behavior = Style::flatSimple; }, 1, true, raised},
    {"hot, flat at rest", [](ButtonLook& look) { look.behavior = Style::flatHeavy; }, 1, false, higher},
    {"pressed, with everything", [](ButtonLook& look) { look.dropDown = true; }, 2, true,
     ground + pressedLabel + "control (86,1,99,25) kind 5 state 16\n" + sunken + focus},
    {"above pressed is pressed", [](ButtonLook&) {}, 7, false, ground + pressedLabel + sunken},
    {"below normal draws nothing", [](ButtonLook&) {}, -1, true, ""},
};

ButtonLook Look() {
    ButtonLook look;
    look.caption = u"&Save";
    look.face = {0, 0, 100, 24};
    return look;
}

TEST(ButtonFace, EachState) {
    for (const Case& c : cases) {
        ButtonLook look = Look();
        c.change(look);
        RecordingSurface surface;
        DrawButton(surface, look, c.state, c.focused);
        EXPECT_EQ(surface.Log(), c.expected) << c.name;
    }
}

TEST(ButtonFace, DistancesFollowTheResolution) {
    ButtonLook look = Look();
    look.dropDown = true;
    look.face = {0, 0, 200, 48};
    RecordingSurface surface(Dpi{192, 192});
    DrawButton(surface, look, 0, true);
    EXPECT_NE(surface.Log().find("control (170,0,196,48)"), std::string::npos) << surface.Log();
    EXPECT_NE(surface.Log().find("focus (6,6,194,42)"), std::string::npos) << surface.Log();
    look.face = {0, 0, 6, 6};
    RecordingSurface small;
    DrawFocus(small, look);
    EXPECT_EQ(small.Log(), "") << "no focus rectangle where there is no room";
}

// A repaint shows what the calls so far have left on the button.
TEST(ButtonFace, ImageRemembersWhatWasDrawn) {
    using Calls = std::vector<std::pair<int, bool>>;
    constexpr int focusAlone = 99;
    const struct {
        const char* name;
        Calls calls;
        Calls expected;  // the calls of DrawButton that make the same picture
    } sequences[] = {
        {"nothing yet", {}, {{0, false}}},
        {"focus drawn twice is drawn once", {{focusAlone, true}, {focusAlone, true}}, {{0, true}}},
        {"focus drawn on a hot button", {{1, false}, {focusAlone, true}}, {{0, true}, {1, true}}},
        {"hot over pressed", {{2, true}, {1, true}}, {{2, true}, {1, true}}},
        {"rest wipes all", {{2, true}, {1, true}, {0, false}}, {{0, false}}},
        {"below normal changes nothing", {{2, false}, {-3, true}}, {{2, false}}},
    };
    for (const auto& s : sequences) {
        ButtonImage image;
        for (const auto& [state, focused] : s.calls)
            state == focusAlone ? image.DrawFocus() : image.Draw(state, focused);
        RecordingSurface painted;
        image.Paint(painted, Look());
        RecordingSurface expected;
        for (const auto& [state, focused] : s.expected) DrawButton(expected, Look(), state, focused);
        EXPECT_EQ(painted.Log(), expected.Log()) << s.name;
    }
}

}  // namespace
}  // namespace qvx::buttons
