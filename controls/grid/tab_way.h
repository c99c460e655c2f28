// The path of a Tab: from the open editor or the grid, past the host, to another cell or to the next control.
//
// Containers differ. One that asks for keys does so before the message arrives, and then moves the focus, uses the key
// itself, or delivers it nevertheless; one that does not ask just delivers. On each path an edit is committed once, the
// host is notified once of a key pressed on the grid and may refuse or replace it, and only then is the target decided.
#pragma once

#include <optional>
#include <utility>

#include "common/keys.h"
#include "controls/grid/cell_step.h"
#include "controls/grid/control_state.h"

namespace qvx::grid {

// A key after the host's handlers have seen it. `shift` holds the bits of an event's Shift argument.
struct PressedKey {
    short key = 0;  // a virtual key; 0: the key has been refused
    short shift = 0;
    bool endsEntry = false;  // a Tab that leaves the grid from any cell
    bool declined = false;   // the container was asked to move the focus for it, and did not
    bool Backwards() const { return !endsEntry && (shift & keys::shiftMask) != 0; }
};

// Returns the step of a Tab from the current cell. With Ctrl or Alt, and without AutoTab, it leaves the grid.
CellStep StepOf(const PressedKey& tab, const flexgrid::Grid& grid, const ControlState& state);

class TabWay {
  public:
    // The next Tab to arrive ends the entry of rows.
    void EndEntry() { endsEntry_ = true; }
    // The focus has left: keys on their way are no longer meant for the grid.
    void Forget() { *this = {}; }

    // The container asks whether a Tab is to be delivered. If not, the Tab leaves the grid, and the container moves the
    // focus. `windows` has
    //   bool EndEdit()                              false if a handler has moved the current cell meanwhile
    //   void NotifyKeyDown(short& key, short& shift)  a handler may replace the key; 0 is none
    //   bool HasFocus()                             whether the grid or its editor has it
    template <class Windows>
    bool Asked(int shift, const flexgrid::Grid& grid, const ControlState& state, Windows& windows) {
        PressedKey press{keys::tab, static_cast<short>(shift), std::exchange(endsEntry_, false), false};
        if (EditIsOpen(state))
            End(press, windows);
        else
            Notify(press, windows);
        const bool leaves = press.key == keys::tab && StepOf(press, grid, state).kind == CellStep::Kind::Leave;
        // No container moves the focus for a Tab with Ctrl or Alt: it can still be asked to do so for a plain one.
        press.declined = leaves && (shift & ~keys::shiftMask) == 0;
        asked_ = press;
        return !leaves;
    }

    // A Tab arrives at the editor. Returns what is left to do for it.
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

    // Any key arrives at the grid. Returns what is left to do for it.
    template <class Windows>
    PressedKey ArrivedAtGrid(short key, short shift, Windows& windows) {
        const auto asked = std::exchange(asked_, std::nullopt);
        if (asked && key == keys::tab) return *asked;
        PressedKey press{key, shift, key == keys::tab && std::exchange(endsEntry_, false), false};
        Notify(press, windows);
        return press;
    }

  private:
    // A handler that moves the focus itself has done the job of the Tab, and so has a handler of AfterCellChange that
    // moves the current cell.
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
