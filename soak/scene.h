// What a user sees on the screen before the next action.
#pragma once

#include <string_view>
#include <vector>

#include "common/geometry.h"

namespace qvx::soak {

// The kind of input that a window understands.
enum class Kind {
    form,     // the window of a form or of the designer, and every window without a kind of its own
    grid,     // cells with headers, borders and scroll bars
    edit,     // takes text
    list,     // rows to choose from: lists, combo boxes, trees, the designer's property list
    button,   // pressed
    canvas,   // the designer's: controls are drawn, moved and sized on it
    palette,  // the designer's toolbox
    popup,    // an open menu
    dialog,   // a window that expects an answer
};

// Returns the kind by the name of the window's class.
Kind KindOf(std::string_view className);

struct Part {
    Kind kind = Kind::form;
    Rect area{};  // from the top left corner of the active window's frame, in pixels
};

struct Scene {
    bool away = false;       // another program is active, or none
    bool minimized = false;  // whether the form is minimized
    bool main = true;        // the active window is the form's own and nothing is above it
    bool run = false;        // the same for a form that the designer runs
    int answers = 0;         // for how many actions another window has been the active one
    Kind focus = Kind::form;
    Size size{};              // of the active window
    std::vector<Part> parts;  // the windows in the active one and its open menus, all visible
};

}  // namespace qvx::soak
