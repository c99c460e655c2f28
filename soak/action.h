// What a person does to a program, one step at a time, and its line in a replay: the words are those of key scripts.
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
    drag,      // with the left button from `at` to `to`, pressing the key `text` before it lets go when there is one
    wheel,     // turns the wheel by `count` notches where the pointer is, away from the person when positive
    size,      // makes the active window `to.x` pixels wide and `to.y` high
    minimize,  // the form's window
    maximize,
    restore,
    leave,  // turns to another program
    back,   // and to this one again
};

// Places are pixels from the top left corner of the active window's frame.
struct Action {
    Deed deed = Deed::key;
    Point at{};
    Point to{};
    int count = 0;
    std::string text{};  // UTF-8
    friend bool operator==(const Action&, const Action&) = default;
};

std::string LineOf(const Action& action);
// Nothing when the line is not one that LineOf writes.
std::optional<Action> ActionOf(std::string_view line);

// A list of actions with the form that they are for.
struct Replay {
    std::string subject;  // "invoice": samples/invoice.frm with its script; "design invoice": in the designer
    int repeats = 1;      // how often the list is gone through: more than once where it is about what is left behind
    std::vector<Action> actions;
    friend bool operator==(const Replay&, const Replay&) = default;
};

// `remark` stands before it, each of its lines behind a "#".
std::string TextOf(const Replay& replay, std::string_view remark);
// Nothing when a line makes no sense; `wrongLine` is its number then.
std::optional<Replay> ReplayOf(std::string_view text, int& wrongLine);

// A key by its name: "Return", "F2", "a", "7", "ctrl+shift+Tab". Its number is the system's.
struct KeyPress {
    int key = 0;
    bool control = false;
    bool shift = false;
    bool alt = false;
    friend bool operator==(const KeyPress&, const KeyPress&) = default;
};
std::optional<KeyPress> KeyOf(std::string_view name);

}  // namespace qvx::soak
