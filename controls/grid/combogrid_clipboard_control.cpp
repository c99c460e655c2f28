// The ComboGrid's members for undo, redo and the clipboard.
#include "controls/grid/combogrid_control.h"

namespace qvx::grid {

STDMETHODIMP ComboGridControl::Undo() {
    return Guard([&] { entry_.Undo(); });
}

STDMETHODIMP ComboGridControl::Redo() {
    return Guard([&] { entry_.Redo(); });
}

STDMETHODIMP ComboGridControl::get_CanUndo(VARIANT_BOOL* result) {
    return Give(result, [&] { return entry_.CanUndo(); });
}

STDMETHODIMP ComboGridControl::get_CanRedo(VARIANT_BOOL* result) {
    return Give(result, [&] { return entry_.CanRedo(); });
}

STDMETHODIMP ComboGridControl::Copy() {
    return Guard([&] { entry_.Copy(); });
}

STDMETHODIMP ComboGridControl::Cut() {
    return Guard([&] { entry_.Cut(); });
}

STDMETHODIMP ComboGridControl::Paste() {
    return Guard([&] { entry_.Paste(); });
}

}  // namespace qvx::grid
