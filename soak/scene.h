// What somebody sees who looks at the screen before doing the next thing.
#pragma once

#include <string_view>
#include <vector>

#include "common/geometry.h"

namespace qvx::soak {

// What a window understands.
enum class Kind {
    form,     // the window of a form or of the designer, and everything without a meaning of its own
    grid,     // cells with headers, borders and scroll bars
    edit,     // takes text
    list,     // rows to choose from: lists, combo boxes, trees, the designer's property list
    button,   // pressed
    canvas,   // the designer's: things are drawn, moved and sized on it
    palette,  // its toolbox
    popup,    // a menu that is open
    dialog,   // a window that wants an answer
};

// By the name of the window's class.
Kind KindOf(std::string_view className);

struct Part {
    Kind kind = Kind::form;
    Rect area{};  // from the top left corner of the active window's frame, in pixels
};

struct Scene {
    bool away = false;       // another program is active, or none
    bool minimized = false;  // the form is
    bool main = true;        // the active window is the form's own and nothing lies above it
    bool run = false;        // it is that of a form which the designer runs, and likewise
    int answers = 0;         // how many actions some other window has been the active one for
    Kind focus = Kind::form;
    Size size{};              // of the active window
    std::vector<Part> parts;  // the windows in it and its open menus, all visible
};

}  // namespace qvx::soak
