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
