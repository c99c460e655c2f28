// The actions of a user of a program, one step at a time, and their lines in a replay; the words are those of key
// scripts.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/geometry.h"

namespace qvx::soak {

enum class Deed {
    key,    // presses `text`, a key's name with "ctrl+", "shift+" or "alt+" before it
    type,   // types `text`
    move,   // moves the pointer to `at`
    click,  // with the left button at `at`
    rightClick,
    doubleClick,
    drag,   // with the left button from `at` to `to`; the key `text`, if any, is pressed before the button is released
    wheel,  // turns the wheel by `count` notches where the pointer is, away from the person when positive
    size,   // makes the active window `to.x` pixels wide and `to.y` high
    minimize,  // the form's window
    maximize,
    restore,
    leave,  // switches to another program
    back,   // switches back to the form
};

// Positions are pixels from the top left corner of the active window's frame.
struct Action {
    Deed deed = Deed::key;
    Point at{};
    Point to{};
    int count = 0;
    std::string text{};  // UTF-8
    friend bool operator==(const Action&, const Action&) = default;
};

// Returns the action's line in a replay, without a line end.
std::string LineOf(const Action& action);
// Returns nullopt when the line is not one that LineOf writes.
std::optional<Action> ActionOf(std::string_view line);

// A list of actions with the form that they are played on.
struct Replay {
    std::string subject;  // "invoice": samples/invoice.frm with its script; "design invoice": in the designer
    int repeats = 1;      // how often the list is played; more than once if it demonstrates growth
    std::vector<Action> actions;
    friend bool operator==(const Replay&, const Replay&) = default;
};

// `remark` comes first, with each of its lines after a "#".
std::string TextOf(const Replay& replay, std::string_view remark);
// Returns nullopt when a line is invalid; `wrongLine` is its number then.
std::optional<Replay> ReplayOf(std::string_view text, int& wrongLine);

// A key by its name: "Return", "F2", "a", "7", "ctrl+shift+Tab". Its number is the system's virtual key.
struct KeyPress {
    int key = 0;
    bool control = false;
    bool shift = false;
    bool alt = false;
    friend bool operator==(const KeyPress&, const KeyPress&) = default;
};
// Returns nullopt when there is no key of that name.
std::optional<KeyPress> KeyOf(std::string_view name);

}  // namespace qvx::soak
