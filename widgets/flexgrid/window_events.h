// What a grid's window tells the control around it. What happens to cells and cursor, the grid itself tells
// (grid_listener.h).
#pragma once

#include <memory>

#include "common/text.h"

namespace qvx::flexgrid {

// Called on the window's thread while it handles a message. A listener may do anything to the grid or the window,
// destroy it too; but Scroll, like the grid's own events, comes from inside the grid, which must outlast it (Hold).
// Positions are twips from the window's client corner; `shift` is as in common/keys.h.
class GridWindowEvents {
  public:
    virtual ~GridWindowEvents() = default;
    // Keeps the listener's owner alive while a message or call is worked on.
    virtual std::shared_ptr<void> Hold() { return {}; }
    virtual void Click() {}
    virtual void DblClick() {}
    // Before the grid acts on the key: another key may be put in its place, 0 is none.
    virtual void KeyDown(short& /*keyCode*/, short& /*shift*/) {}
    virtual void KeyPress(short& /*keyAscii*/) {}
    virtual void KeyUp(short& /*keyCode*/, short /*shift*/) {}
    // Before the cursor moves; MouseRow and MouseCol already tell the cell.
    virtual void MouseDown(short /*button*/, short /*shift*/, float /*x*/, float /*y*/) {}
    virtual void MouseMove(short /*button*/, short /*shift*/, float /*x*/, float /*y*/) {}
    virtual void MouseUp(short /*button*/, short /*shift*/, float /*x*/, float /*y*/) {}
    // TopRow or LeftCol has changed, by whomever.
    virtual void Scroll() {}
    virtual void GotFocus() {}
    virtual void LostFocus() {}
    // The user has given a row or column another size.
    virtual void Resized() {}
    // The text of the tool tip for a cell, empty for none; asked when the pointer rests on it.
    virtual Text ToolTip(int /*row*/, int /*col*/) { return {}; }
};

}  // namespace qvx::flexgrid
