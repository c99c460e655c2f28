// Functions for the system's edit field that count positions as hosts do, for any owner of the field.
#pragma once

#include <windows.h>

#include <cstddef>

#include "common/ole_color.h"
#include "common/text.h"
#include "win/handles.h"

namespace qvx {

// Positions are in characters of the text.
struct EditSelection {
    int start = 0;
    int length = 0;
};

// Limits a selection to a text of `size` characters. Throws error 380 for negative values.
EditSelection ClampedSelection(int start, int length, std::size_t size);

// Returns the present selection.
EditSelection SelectionOf(HWND edit);
qvx::Text SelectedText(HWND edit);
// A position beyond the text is limited to its end. Throws error 380 for negative values.
void SetSelectionStart(HWND edit, int start);
void SetSelectionLength(HWND edit, int length);
// Replaces the selection as typing does: it is one step of the field's undo.
void ReplaceSelection(HWND edit, TextView text);

// Sets the field's reading direction to that of its text; a text without any letters changes nothing.
void FollowDirection(HWND edit);

// The colours that an edit field requests from its parent.
class FieldColors {
  public:
    OleColor Back() const { return back_; }
    OleColor Fore() const { return fore_; }
    void SetBack(OleColor color);
    void SetFore(OleColor color) { fore_ = color; }
    // Returns the answer to WM_CTLCOLOREDIT and related messages, whose wParam this is; the text is grey for a field
    // that is disabled.
    LRESULT Apply(WPARAM wParam, bool enabled);
    // Returns a brush in the background colour; this object owns it.
    HBRUSH Brush();

  private:
    OleColor back_ = colors::windowBackground;
    OleColor fore_ = colors::windowText;
    UniqueBrush brush_;
};

}  // namespace qvx
