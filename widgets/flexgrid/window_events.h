// The notifications of a grid's window for the control around it. The grid itself sends those about cells and the
// cursor (grid_listener.h).
#pragma once

#include <memory>

#include "common/text.h"
#include "widgets/flexgrid/hit_test.h"

namespace qvx::flexgrid {

// Called on the window's thread while it handles a message. A listener may do anything to the grid or the window, and
// may destroy it; but Scroll, like the grid's own events, is called from within the grid, which must outlive the call
// (Hold). Positions are in twips from the window's client corner; `shift` is as in common/keys.h.
class GridWindowEvents {
  public:
    virtual ~GridWindowEvents() = default;
    // Keeps the listener's owner alive during a message or call.
    virtual std::shared_ptr<void> Hold() { return {}; }
    virtual void Click() {}
    virtual void DblClick() {}
    // Called before the grid handles the key: the listener may replace it with another key, 0 for none.
    virtual void KeyDown(short& /*keyCode*/, short& /*shift*/) {}
    virtual void KeyPress(short& /*keyAscii*/) {}
    virtual void KeyUp(short& /*keyCode*/, short /*shift*/) {}
    // Called before the cursor moves; MouseRow and MouseCol already return the cell.
    virtual void MouseDown(short /*button*/, short /*shift*/, float /*x*/, float /*y*/) {}
    virtual void MouseMove(short /*button*/, short /*shift*/, float /*x*/, float /*y*/) {}
    virtual void MouseUp(short /*button*/, short /*shift*/, float /*x*/, float /*y*/) {}
    // TopRow or LeftCol has changed, whoever changed it.
    virtual void Scroll() {}
    virtual void GotFocus() {}
    virtual void LostFocus() {}
    // The user has resized a row or column.
    virtual void Resized() {}
    // Some time after cells have been drawn whose marks wait (CellMarks::Waits).
    virtual void MarksWait() {}
    // Returns the text of the tool tip for a cell, empty for none; called when the pointer rests on the cell.
    virtual Text ToolTip(int /*row*/, int /*col*/) { return {}; }
    // The right button was released, or the menu key pressed; the point is in the screen's pixels. Returns whether a
    // menu was shown. `cell` is the current one for the key.
    virtual bool ContextMenu(const Hit& /*cell*/, int /*x*/, int /*y*/) { return false; }
    // Whether a click on the header of a scrolling column is handled by HeaderClick. The cursor then stays where it is,
    // and a press selects cells only once it becomes a drag.
    virtual bool HandlesHeaderClick(int /*col*/) { return false; }
    // Called after Click.
    virtual void HeaderClick(int /*col*/, bool /*shift*/) {}
    // Whether scrolling columns can be dragged to another place by their headers. A press on a header selects cells
    // only when it is released.
    virtual bool MovesColumns() { return false; }
    // The user has dragged a column to the place of another one.
    virtual void ColumnDropped(int /*col*/, int /*position*/) {}
    // The button in a cell was clicked (SetButtons); called after Click.
    virtual void ButtonClick(int /*row*/, int /*col*/) {}
    // Whether a double click on a column's border fits the width of the column, after DblClick.
    virtual bool FitsColumns() { return false; }
};

}  // namespace qvx::flexgrid
