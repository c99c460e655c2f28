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
    // Shown when the mouse rests over `tool`, a window of `owner`'s or `owner` itself; empty for none.
    void Set(HWND owner, HWND tool, TextView text);
    // The window went or is going; the text stays for the next one.
    void Destroy();

  private:
    qvx::Text text_;
    HWND window_ = nullptr;
};

}  // namespace qvx
