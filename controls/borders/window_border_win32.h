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

    // A window of this thread. Of several borders on one window the last one is seen.
    void Start(HWND window, const BorderColors& colors);
    // Seen at once.
    void SetColors(const BorderColors& colors);
    // The window is its own again, and shows the frame that it had.
    void End();
    // Null before Start, after End and when the window has been destroyed.
    HWND Window() const { return window_; }

  private:
    friend struct BorderWindows;

    HWND window_ = nullptr;
    BorderColors colors_;
};

}  // namespace qvx::borders
