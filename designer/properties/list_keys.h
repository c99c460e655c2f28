// What keys mean in the property list: in its rows, in the field over a value, and in the boxes that open below one.
#pragma once

#include "designer/properties/rows_view.h"

namespace qvx::host::designer {

struct ListKey {
    int key = 0;
    int shift = 0;        // the bits of common/keys.h
    bool system = false;  // the system sends it as one of its own, as it does while Alt is held
};

enum class RowAction {
    none,         // the key is not the list's
    idle,         // it is, but changes nothing
    pressButton,  // opens the box or the dialog of the value
    jump,         // to the next name with that letter
    walk,
    toggle,          // opens or closes a heading
    edit,            // opens the field
    editOrPress,     // the same, or the button of a value that is not typed
    editOrLeave,     // the same, or leaves the list
    leaveBackwards,  // the list
    clearPicture,
};

struct RowKeyState {
    bool heading = false;  // the current line is one
    bool open = false;     // a heading whose rows are shown
    bool picture = false;  // the current row is a picture that may be changed
};

struct RowKeyMeaning {
    RowAction action = RowAction::none;
    RowStep step{};  // of walk
};
RowKeyMeaning RowKeyOf(const ListKey& key, const RowKeyState& state);

enum class FieldAction {
    none,  // the key is the field's own
    pressButton,
    jump,
    walk,
    apply,        // what has been typed
    restore,      // what was there before
    close,        // the field, for the rows
    leave,        // applies, and leaves the list
    applyToRows,  // applies, and closes the field
};

struct FieldKeyMeaning {
    FieldAction action = FieldAction::none;
    RowStep step{};
};
// `changed` when something has been typed that has not been applied.
FieldKeyMeaning FieldKeyOf(const ListKey& key, bool changed);

// The parts of a box that can have the keys.
enum class BoxPart { choices, text, palette, colors, otherColor };
enum class BoxAction { none, close, accept, nextPart, previousPart };
BoxAction BoxActionOf(BoxPart part, const ListKey& key);

// The cell of the palette that an arrow leads to from `cell`, which is -1 for none; the same where the palette ends.
// Nothing for another key.
std::optional<int> PaletteCellAfter(int key, int cell);

}  // namespace qvx::host::designer
