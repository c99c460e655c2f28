// Dots per inch of windows and devices.
#pragma once

#include <windows.h>

#include <optional>

#include "common/geometry.h"

namespace qvx {

// The resolution of the window's monitor, as far as its process is aware of it; that of the screen for a null window.
Dpi WindowDpi(HWND window);
// The resolution of the screen.
Dpi ScreenDpi();

// Converts a horizontal length in pixels at 96 dots per inch to pixels on the window's monitor.
inline int Scaled(int pixels, HWND window) { return Scaled(pixels, WindowDpi(window).x); }

// The contents of WM_DPICHANGED for a top-level window: it is now on a monitor of another resolution, where it would
// look the same at the suggested place. The place is in screen pixels.
struct DpiChange {
    HWND window;
    Dpi dpi;
    Rect suggested;

    DpiChange(HWND changed, WPARAM wParam, LPARAM lParam);
    Point Corner() const { return {suggested.left, suggested.top}; }
    // Moves the window to the suggested place, in the suggested size or in one that was calculated for the resolution.
    void Follow() const { Follow({suggested.Width(), suggested.Height()}); }
    void Follow(Size size) const;
};

// These functions return the system's metrics (GetSystemMetrics and the like) at a resolution; on systems that provide
// only those of the screen, they return those.
int SystemMetric(int index, Dpi dpi);
// Returns the size that the frame of such a window adds to its client area, without a menu.
Size FrameSize(DWORD style, DWORD exStyle, Dpi dpi);
// Returns the metrics and fonts of captions, menus and message boxes.
NONCLIENTMETRICSW FrameMetrics(Dpi dpi);

// Makes all of the functions above use one resolution for the duration of a scope, so that tests can lay out and draw
// at any resolution.
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
