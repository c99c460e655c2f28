// How a rounded two-state button answers sequences of events.
#include "controls/buttons/rbutton_logic.h"

#include <gtest/gtest.h>

#include "common/keys.h"
#include "tests/unit/button/sequences.h"

namespace qvx::buttons {
namespace {

// A drag over the form's active control.
Step Drag(Point p, const char* expected) {
    return {[=](PushLogic& b) { return b.MouseMove({p, face, true, true, false, true}); }, expected};
}
Step MoveWithSpaceHeld(Point p, const char* expected) {
    return {[=](PushLogic& b) { return b.MouseMove({p, face, false, false, true}); }, expected};
}
Step Typed(char16_t character, const char* expected) {
    return {[=](PushLogic& b) { return b.KeyPress(character); }, expected};
}
Step SpaceUp(const char* expected) { return Up(keys::space, 0, false, expected); }
Step SetOrRemoveFocus(const char* expected) {
    return {[](PushLogic& b) { return static_cast<RButtonLogic&>(b).LetGo(); }, expected};
}

TEST(RButtonLogic, Sequences) {
    ExpectSequences<RButtonLogic>({
        {"the edge is inside",
         {Move({0, 0}, false, "capture 1"), Move({100, 24}, false, "capture 1"), Move({100, 25}, false, "release 0"),
          Move({-1, 3}, false, "release 0")}},
        {"held and moved within",
         {Press("capture 2"), Move(in, true, "capture 2"), Release(in, "release 0 click"), Release(in, "")}},
        {"left while held, released outside: no click", {Press("capture 2"), Drag(out, "0"), Release(out, "release")}},
        {"left while held and back, on the active control",
         {Press("capture 2"), Drag(out, "0"), Drag(in, "capture 2"), Release(in, "release 0 click")}},
        {"left while held and back, on another control's form",
         {Press("capture 2"), Move(out, true, "0"), Move(in, true, "capture 1"), Release(in, "")}},
        {"released outside in one go", {Press("capture 2"), Release(out, "release 0")}},
        {"a release that nobody told", {Press("capture 2"), Move(in, false, "capture 1"), Release(in, "")}},
        {"another button neither presses nor clicks",
         {OtherPress("capture"), OtherMove(in, "capture 1"), Release(in, ""), Move(out, false, "release 0")}},
        {"another button, released outside",
         {OtherPress("capture"), OtherMove(out, "release 0"), Release(out, "release")}},
        {"the mouse was taken away while pressed",
         {Press("capture 2"), MouseTaken("0"), Up(keys::tab, 0, false, "0"), Release(in, ""), Press("capture 2"),
          Release(in, "release 0 click")}},
        {"space repeats and clicks when it comes up",
         {Typed(u' ', "2"), Typed(u' ', "2"), SpaceUp("0 click"), SpaceUp("0")}},
        {"the mouse does nothing while space is held",
         {Typed(u' ', "2"), MoveWithSpaceHeld(out, ""), MoveWithSpaceHeld(in, ""), SpaceUp("0 click")}},
        {"space that came up where nobody told", {Typed(u' ', "2"), Move(in, false, "capture 1"), SpaceUp("0")}},
        {"space with the mouse held: the mouse decides",
         {Press("capture 2"), Typed(u' ', "2"), SpaceUp(""), Release(in, "release 0 click"), SpaceUp("0")}},
        {"the mouse while space is held clicks once",
         {Typed(u' ', "2"), Press("capture 2"), Release(in, "release 0 click"), SpaceUp("0")}},
        {"another key that comes up while space is held",
         {Typed(u' ', "2"), Up(keys::tab, 0, false, "0"), SpaceUp("0 click")}},
        {"another key that comes up while the mouse is held",
         {Press("capture 2"), Up(keys::tab, 0, false, ""), Release(in, "release 0 click")}},
        {"focus lost while space is held", {Focus("focus"), Typed(u' ', "2"), Blur("0"), SpaceUp("0")}},
        {"focus set or removed by the program while space is held",
         {Typed(u' ', "2"), SetOrRemoveFocus("0"), SpaceUp("0")}},
        {"focus removed by the program while the mouse is held",
         {Press("capture 2"), SetOrRemoveFocus("0"), Release(in, "")}},
        {"disabled while pressed",
         {Press("capture 2"), Disabled("release 0"), Up(keys::tab, 0, false, "0"), Release(in, "")}},
        {"disabled while space is held", {Typed(u' ', "2"), Disabled("release 0"), SpaceUp("0")}},
        {"a key that comes up while the mouse is held outside",
         {Press("capture 2"), Drag(out, "0"), Up(keys::tab, 0, false, "0")}},
        {"disabled under the mouse", {Move(in, false, "capture 1"), Disabled("release 0")}},
        {"enter clicks at once and looks no different",
         {Down(keys::enter, 0, ""), Typed(u'\r', "click"), Up(keys::enter, 0, false, "0")}},
        {"other characters", {Typed(u'a', ""), Typed(u'\x1B', "")}},
        {"arrows move the focus",
         {Down(keys::left, 0, "shift-tab"), Down(keys::right, 0, "tab"), Down(keys::left, keys::shiftMask, ""),
          Down(keys::right, keys::controlMask, ""), Down(keys::up, 0, "")}},
        {"access key", {AccessKeyPressed('S', "0 click"), AccessKeyPressed(keys::enter, "0 click")}},
    });
}

TEST(RButtonLogic, KeysThatEndAtTheButton) {
    const RButtonLogic logic;
    for (const int key : {keys::space, keys::enter, keys::left, keys::right, keys::up, keys::escape, keys::tab}) {
        const bool always = key == keys::space || key == keys::enter;
        EXPECT_EQ(logic.Wants(key, 0), always || key == keys::left || key == keys::right) << key;
        EXPECT_EQ(logic.Wants(key, keys::shiftMask), always) << key;
    }
}

}  // namespace
}  // namespace qvx::buttons
