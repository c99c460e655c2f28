#include "controls/grid/find_keys.h"

#include "common/keys.h"
#include "controls/grid/cell_step.h"

namespace qvx::grid {
namespace {

FindAction SharedFindKey(int keyCode, int shift) {
    if (keyCode == keys::f3 && shift == 0) return FindAction::Next;
    if (keyCode == keys::f3 && shift == keys::shiftMask) return FindAction::Previous;
    if (keyCode == 'F' && shift == keys::controlMask) return FindAction::Find;
    if (keyCode == 'H' && shift == keys::controlMask) return FindAction::Replace;
    return FindAction::None;
}

}  // namespace

FindAction DecideFindKey(int keyCode, int shift, const ControlState& state) {
    if (!state.findBar) return FindAction::None;
    const FindAction action = SharedFindKey(keyCode, shift);
    return action == FindAction::Replace && EditIsOpen(state) ? FindAction::None : action;
}

FindAction DecideBarKey(int keyCode, int shift, BarField field) {
    const bool plain = shift == 0;
    const bool shifted = shift == keys::shiftMask;
    const bool edit = field == BarField::Text || field == BarField::Replacement;
    switch (keyCode) {
        case keys::enter:
            if (!plain && !shifted) return FindAction::None;
            if (shifted) return FindAction::Previous;
            if (field == BarField::Button) return FindAction::Push;
            return field == BarField::Replacement ? FindAction::ReplaceThis : FindAction::Next;
        case keys::escape:
            return plain ? FindAction::Close : FindAction::None;
        case keys::tab:
            if (plain) return FindAction::NextField;
            return shifted ? FindAction::PreviousField : FindAction::None;
        case 'A':
            return edit && shift == keys::controlMask ? FindAction::SelectAll : FindAction::None;
        default:
            return SharedFindKey(keyCode, shift);
    }
}

bool BarKeepsKey(int keyCode, int shift) {
    if (SharedFindKey(keyCode, shift) != FindAction::None) return true;
    if (keyCode >= keys::f1 && keyCode <= keys::f24) return false;
    if ((shift & keys::controlMask) == 0) return (shift & keys::altMask) == 0;
    const bool moves = keyCode == keys::left || keyCode == keys::right || keyCode == keys::home || keyCode == keys::end;
    return moves || IsEditorCommand(keyCode, shift);
}

}  // namespace qvx::grid
