// Sequences of events for a button's logic as tables: each event and the resulting actions.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "widgets/button/push_logic.h"

namespace qvx::buttons {

inline std::string Show(const ButtonActions& actions) {
    std::string out;
    for (const ButtonAction action : actions) {
        constexpr const char* names[] = {"capture", "release", "0", "1", "2", "focus", "tab", "shift-tab", "click"};
        out += (out.empty() ? "" : " ") + std::string(names[static_cast<int>(action)]);
    }
    return out;
}

constexpr Size face{100, 24};
constexpr Point in{50, 10};
constexpr Point out{101, 10};

struct Step {
    std::function<ButtonActions(PushLogic&)> event;
    const char* expected;
};

template <auto event>
Step On(const char* expected) {
    return {[](PushLogic& b) { return (b.*event)(); }, expected};
}
constexpr auto Press = On<&PushLogic::LeftButtonDown>;
constexpr auto OtherPress = On<&PushLogic::OtherButtonDown>;
constexpr auto MouseTaken = On<&PushLogic::CaptureLost>;
constexpr auto Disabled = On<&PushLogic::Cancel>;
constexpr auto Focus = On<&PushLogic::GotFocus>;
constexpr auto Blur = On<&PushLogic::LostFocus>;

inline Step Move(Point p, bool left, const char* expected) {
    return {[=](PushLogic& b) { return b.MouseMove({p, face, left, left}); }, expected};
}
inline Step Release(Point p, const char* expected) {
    return {[=](PushLogic& b) { return b.MouseUp(p, face); }, expected};
}
// With another button than the left one held.
inline Step OtherMove(Point p, const char* expected) {
    return {[=](PushLogic& b) { return b.MouseMove({p, face, false, true}); }, expected};
}
inline Step Down(int key, int shift, const char* expected) {
    return {[=](PushLogic& b) { return b.KeyDown(key, shift); }, expected};
}
inline Step Up(int key, int shift, bool cursorInside, const char* expected) {
    return {[=](PushLogic& b) { return b.KeyUp(key, shift, cursorInside); }, expected};
}
inline Step AccessKeyPressed(int key, const char* expected) {
    return {[=](PushLogic& b) { return b.AccessKeyPress(key); }, expected};
}

struct Sequence {
    const char* name;
    std::vector<Step> steps;
};

// Executes each sequence with a logic of its own.
template <typename Logic>
void ExpectSequences(const std::vector<Sequence>& sequences) {
    for (const Sequence& sequence : sequences) {
        Logic logic;
        int number = 0;
        for (const Step& step : sequence.steps) {
            EXPECT_EQ(Show(step.event(logic)), step.expected) << sequence.name << ", step " << ++number;
        }
    }
}

}  // namespace qvx::buttons
