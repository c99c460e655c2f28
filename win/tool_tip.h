// A tool tip over a window, in the system's own look.
#pragma once

#include <windows.h>

#include "common/text.h"

namespace qvx {

class ToolTip {
  public:
    ToolTip() = default;
    ~ToolTip() { Destroy(); }
    ToolTip(const ToolTip&) = delete;
    ToolTip& operator=(const ToolTip&) = delete;

    const qvx::Text& Text() const { return text_; }
    // Sets the tip to show while the mouse rests over `tool`, a child window of `owner` or `owner` itself; an empty
    // text shows none.
    void Set(HWND owner, HWND tool, TextView text);
    // To be called when the window is destroyed; the text is kept for the next window.
    void Destroy();

  private:
    qvx::Text text_;
    HWND window_ = nullptr;
};

}  // namespace qvx
