// The system's edit field as hosts count in it, whoever it belongs to.
#pragma once

#include <windows.h>

#include <cstddef>

#include "common/ole_color.h"
#include "common/text.h"
#include "win/handles.h"

namespace qvx {

// In characters of the text.
struct EditSelection {
    int start = 0;
    int length = 0;
};

// Cut to a text of `size` characters. Error 380 for negative values.
EditSelection ClampedSelection(int start, int length, std::size_t size);

EditSelection SelectionOf(HWND edit);
qvx::Text SelectedText(HWND edit);
// What lies beyond the text is cut off. Error 380 for negative values.
void SetSelectionStart(HWND edit, int start);
void SetSelectionLength(HWND edit, int length);
// As typing does it: one step of the field's undo.
void ReplaceSelection(HWND edit, TextView text);

// Lets the field's text run the way it reads; a text without any letters changes nothing.
void FollowDirection(HWND edit);

// The colours that an edit field asks its parent for.
class FieldColors {
  public:
    OleColor Back() const { return back_; }
    OleColor Fore() const { return fore_; }
    void SetBack(OleColor color);
    void SetFore(OleColor color) { fore_ = color; }
    // The answer to WM_CTLCOLOREDIT and its kin, whose wParam this is; grey text for a field that is not enabled.
    LRESULT Apply(WPARAM wParam, bool enabled);
    HBRUSH Brush();

  private:
    OleColor back_ = colors::windowBackground;
    OleColor fore_ = colors::windowText;
    UniqueBrush brush_;
};

}  // namespace qvx
