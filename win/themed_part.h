// Parts of the system's controls in the look of its visual styles, for those who draw them themselves.
#pragma once

#include <windows.h>

namespace qvx {

// Whether one of the system's controls has that look here, which depends on the program's manifest.
bool HasTheme(HWND control);

// Draws the button of a combo. Returns false where the visual styles are off.
bool DrawThemedComboButton(HDC dc, const RECT& area, bool pressed, bool enabled);

}  // namespace qvx
