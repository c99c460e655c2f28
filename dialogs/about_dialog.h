// The About box that every control's ShowAbout opens. Windows only.
#pragma once

#include <windows.h>

namespace qvx {

// Shows the box modally over `owner`'s top-level window (may be null) and returns when it is closed: by any key except
// Shift and Control, by a click on the form, or by its close box. While it is open, a second call only brings it to the
// front.
void ShowAboutBox(HWND owner);

}  // namespace qvx
