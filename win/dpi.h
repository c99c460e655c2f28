// Dots per inch of windows and devices.
#pragma once

#include <windows.h>

#include <optional>

#include "common/geometry.h"

namespace qvx {

// Of the monitor a window is on as far as its process is aware of it; of the screen for no window.
Dpi WindowDpi(HWND window);
// The screen's.
Dpi ScreenDpi();

// What measures so many pixels at 96 dots per inch, across and on that window's monitor.
inline int Scaled(int pixels, HWND window) { return Scaled(pixels, WindowDpi(window).x); }

// What the system tells a top-level window by WM_DPICHANGED: it is on a monitor of another resolution now, where it
// would look the same in the suggested place. Pixels of the screen.
struct DpiChange {
    HWND window;
    Dpi dpi;
    Rect suggested;

    DpiChange(HWND changed, WPARAM wParam, LPARAM lParam);
    Point Corner() const { return {suggested.left, suggested.top}; }
    // Moves the window there: in the suggested size, or in one that it has worked out for the resolution.
    void Follow() const { Follow({suggested.Width(), suggested.Height()}); }
    void Follow(Size size) const;
};

// What follows is the system's GetSystemMetrics and its kin at a resolution; where only that of the screen is known,
// this.
int SystemMetric(int index, Dpi dpi);
// What the frame of such a window adds to the size of its inside; without a menu.
Size FrameSize(DWORD style, DWORD exStyle, Dpi dpi);
NONCLIENTMETRICSW FrameMetrics(Dpi dpi);

// Makes all of the above answer one value for the length of a scope, so that tests can lay out and draw at any
// resolution.
class DpiOverride {
  public:
    explicit DpiOverride(Dpi dpi);
    ~DpiOverride();
    DpiOverride(const DpiOverride&) = delete;
    DpiOverride& operator=(const DpiOverride&) = delete;

  private:
    std::optional<Dpi> previous_;
};

}  // namespace qvx
