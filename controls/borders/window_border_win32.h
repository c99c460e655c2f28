// The flat border of one window, painted over its edge after every painting of its frame.
#pragma once

#include <windows.h>

#include "controls/borders/border_colors.h"

namespace qvx::borders {

class WindowBorder {
  public:
    WindowBorder() = default;
    ~WindowBorder() { End(); }
    WindowBorder(const WindowBorder&) = delete;
    WindowBorder& operator=(const WindowBorder&) = delete;

    // Starts the border on a window of this thread. Of several borders on one window, the last one is visible.
    void Start(HWND window, const BorderColors& colors);
    // The new colours are visible at once.
    void SetColors(const BorderColors& colors);
    // Ends the border; the window shows its previous frame again.
    void End();
    // Null before Start, after End, and when the window has been destroyed.
    HWND Window() const { return window_; }

  private:
    friend struct BorderWindows;

    HWND window_ = nullptr;
    BorderColors colors_;
};

}  // namespace qvx::borders
