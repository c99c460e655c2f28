// The way of a Tab: from the open editor or the grid, past the host, to another cell or out to the next control.
//
// Containers differ. One that asks for keys does so before the message arrives, and then moves the focus, uses the key
// up, or delivers it all the same; one that does not ask just delivers. On each way an edit is committed once, the host
// hears of a key pressed on the grid once and may refuse or replace it, and only then is it decided where to go.
#pragma once

#include <optional>
#include <utility>

#include "common/keys.h"
#include "controls/grid/cell_step.h"
#include "controls/grid/control_state.h"

namespace qvx::grid {

// A key as the host has left it. `shift` holds the bits of an event's Shift argument.
struct PressedKey {
    short key = 0;  // a virtual key; 0: none any more
    short shift = 0;
    bool endsEntry = false;  // a Tab that leaves the grid from any cell
    bool declined = false;   // the container has been asked to move the focus for it, and has not
    bool Backwards() const { return !endsEntry && (shift & keys::shiftMask) != 0; }
};

// Where a Tab leads from the current cell. With Ctrl or Alt, and without AutoTab, it leaves the grid.
CellStep StepOf(const PressedKey& tab, const flexgrid::Grid& grid, const ControlState& state);

class TabWay {
  public:
    // The Tab that is about to arrive ends the entry of rows.
    void EndEntry() { endsEntry_ = true; }
    // The focus has gone: keys on their way are no longer for the grid.
    void Forget() { *this = {}; }

    // The container asks for a Tab: whether it is to be delivered. Else it leaves the grid, which is the container's
    // to do. `windows` has
    //   bool EndEdit()                              false when a handler has moved the current cell meanwhile
    //   void NotifyKeyDown(short& key, short& shift)  a handler may put another key in its place, 0 is none
    //   bool HasFocus()                             whether the grid or its editor has it
    template <class Windows>
    bool Asked(int shift, const flexgrid::Grid& grid, const ControlState& state, Windows& windows) {
        PressedKey press{keys::tab, static_cast<short>(shift), std::exchange(endsEntry_, false), false};
        if (EditIsOpen(state))
            End(press, windows);
        else
            Notify(press, windows);
        const bool leaves = press.key == keys::tab && StepOf(press, grid, state).kind == CellStep::Kind::Leave;
        // No container moves the focus for a Tab with Ctrl or Alt: that one can still be asked for a plain one.
        press.declined = leaves && (shift & ~keys::shiftMask) == 0;
        asked_ = press;
        return !leaves;
    }

    // A Tab arrives at the editor: what is left to do for it.
    template <class Windows>
    PressedKey ArrivedAtEditor(short shift, const ControlState& state, Windows& windows) {
        if (const auto asked = std::exchange(asked_, std::nullopt)) return *asked;
        PressedKey press{keys::tab, shift, false, false};
        if (EditIsOpen(state))
            End(press, windows);
        else
            press.key = 0;  // the edit has ended while the key was on its way
        return press;
    }

    // Any key arrives at the grid.
    template <class Windows>
    PressedKey ArrivedAtGrid(short key, short shift, Windows& windows) {
        const auto asked = std::exchange(asked_, std::nullopt);
        if (asked && key == keys::tab) return *asked;
        PressedKey press{key, shift, key == keys::tab && std::exchange(endsEntry_, false), false};
        Notify(press, windows);
        return press;
    }

  private:
    // A handler that moves the focus itself has done what a Tab is for, and so has one of AfterCellChange that moves
    // the current cell.
    template <class Windows>
    static void Notify(PressedKey& press, Windows& windows) {
        const bool hadFocus = windows.HasFocus();
        windows.NotifyKeyDown(press.key, press.shift);
        if (press.key == keys::tab && hadFocus && !windows.HasFocus()) press.key = 0;
    }
    template <class Windows>
    static void End(PressedKey& press, Windows& windows) {
        const bool hadFocus = windows.HasFocus();
        if (!windows.EndEdit() || (hadFocus && !windows.HasFocus())) press.key = 0;
    }

    bool endsEntry_ = false;
    std::optional<PressedKey> asked_;
};

}  // namespace qvx::grid
