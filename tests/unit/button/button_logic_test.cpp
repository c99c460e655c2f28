// How a button answers sequences of events.
#include "widgets/button/button_logic.h"

#include <gtest/gtest.h>

#include "common/keys.h"
#include "tests/unit/button/sequences.h"

namespace qvx::buttons {
namespace {

TEST(ButtonLogic, Sequences) {
    ExpectSequences<ButtonLogic>({
        {"the edge is inside",
         {Move({0, 0}, false, "capture 1"), Move({100, 24}, false, "capture 1"), Move({100, 25}, false, "release 0"),
          Move({-1, 3}, false, "release 0")}},
        {"click once, then the access key",
         {Press("capture 2"), Release(in, "release 0 click"), Release(in, "release 0"),
          AccessKeyPressed('S', "0 click")}},
        {"dragged off, released outside: no click",
         {Press("capture 2"), Move(out, true, "0"), Release(out, "release 0")}},
        {"another button clicks too", {OtherPress("capture"), Release(in, "release 0 click")}},
        {"pressed elsewhere, released here: no click", {Move(in, true, "capture 2"), Release(in, "release 0")}},
        {"dragged off and back",
         {Press("capture 2"), Move(out, true, "0"), Move(in, true, "capture 2"), Release(in, "release 0 click")}},
        {"another button held outside keeps the mouse", {OtherMove(out, "0"), OtherMove(in, "capture 1")}},
        {"the mouse was taken away while pressed",
         {Press("capture 2"), MouseTaken("0"), AccessKeyPressed('S', "0 click"), Release(in, "release 0")}},
        {"space repeats and clicks when it comes up",
         {Down(keys::space, 0, "capture 2"), Down(keys::space, 0, ""), Up(keys::space, 0, false, "0 release click")}},
        {"the mouse does nothing while space is held",
         {Down(keys::space, 0, "capture 2"), Move(out, false, ""), Up(keys::space, 0, true, "0 release click"),
          Move(out, false, "release 0")}},
        {"space with the mouse held as well: the mouse decides",
         {Press("capture 2"), Down(keys::space, 0, "capture 2"), Up(keys::space, 0, true, ""),
          Release(in, "release 0 click")}},
        {"space with the mouse held outside",
         {Press("capture 2"), Down(keys::space, 0, "capture 2"), Up(keys::space, 0, false, "0"),
          Release(out, "release 0")}},
        {"space that went down elsewhere", {Up(keys::space, 0, true, "")}},
        {"space with shift is not the button's", {Down(keys::space, keys::shiftMask, "")}},
        {"shift pressed meanwhile calls the click off",
         {Down(keys::space, 0, "capture 2"), Up(keys::space, keys::shiftMask, true, "0 release")}},
        {"focus lost while space is held",
         {Focus("focus"), Down(keys::space, 0, "capture 2"), Blur("release 0"), Up(keys::space, 0, true, "")}},
        {"disabled while pressed", {Press("capture 2"), Disabled("release 0"), AccessKeyPressed('S', "0 click")}},
        {"disabled while space is held",
         {Down(keys::space, 0, "capture 2"), Disabled("release 0"), Up(keys::space, 0, true, "")}},
        {"arrows move the focus",
         {Down(keys::left, 0, "shift-tab"), Down(keys::right, 0, "tab"), Down(keys::left, keys::controlMask, ""),
          Down(keys::up, 0, ""), Down(keys::enter, 0, "")}},
        {"access key while busy",
         {Press("capture 2"), AccessKeyPressed('S', ""), Release(out, "release 0"), Down(keys::space, 0, "capture 2"),
          AccessKeyPressed('S', "")}},
    });
}

TEST(ButtonLogic, KeysThatEndAtTheButton) {
    const ButtonLogic logic;
    for (const int key : {keys::space, keys::left, keys::right, keys::up, keys::enter, keys::escape, keys::tab}) {
        EXPECT_EQ(logic.Wants(key, 0), key == keys::space || key == keys::left || key == keys::right) << key;
        EXPECT_FALSE(logic.Wants(key, keys::shiftMask)) << key;
    }
}

TEST(ButtonLogic, WhatCountsAsFocused) {
    ButtonLogic logic;
    logic.AccessKeyPress(keys::enter);
    logic.AccessKeyPress(keys::escape);
    EXPECT_FALSE(logic.Focused()) << "a default or cancel button does not take the focus";
    logic.AccessKeyPress('S');
    EXPECT_TRUE(logic.Focused());
    logic.LostFocus();
    EXPECT_FALSE(logic.Focused());
    logic.GotFocus();
    EXPECT_TRUE(logic.Focused());
    logic.SetFocused(false);
    EXPECT_FALSE(logic.Focused());
}

}  // namespace
}  // namespace qvx::buttons
