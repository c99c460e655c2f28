// The tool tip over the cell that the pointer rests on.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include "common/geometry.h"
#include "common/text.h"
#include "widgets/flexgrid/hit_test.h"

namespace qvx::flexgrid {

// One tool tip for all cells of a window, made when the pointer is first over one. The text is asked for when the
// pointer has come to rest, with a WM_NOTIFY to the window (QuestionOf). Points are pixels of the window's client area.
class CellTip {
  public:
    CellTip() = default;
    ~CellTip() { Destroy(); }
    CellTip(const CellTip&) = delete;
    CellTip& operator=(const CellTip&) = delete;

    // The pointer has moved over `window`: another cell takes the tip of the last one away. Texts are read from right
    // to left with `rightToLeft`.
    void Follow(HWND window, const Hit& cell, Point point, bool rightToLeft);
    // A button went down or up, which takes the tip away as well.
    void Press(UINT message, Point point) { Relay(message, point); }
    // What the tip asks with the WM_NOTIFY of that lParam; null when it is another's or asks nothing.
    NMTTDISPINFOW* QuestionOf(LPARAM lParam) const;
    // No tip shows for an empty text.
    void Answer(NMTTDISPINFOW& question, Text text);
    // To be called when the window goes; Follow makes a new one for the next.
    void Destroy();

  private:
    bool CreateFor(HWND window);
    void SendToolMessage(UINT message);
    void Relay(UINT message, Point point);

    HWND tip_ = nullptr;
    HWND window_ = nullptr;  // that the tip is for
    bool rightToLeft_ = false;
    Hit cell_;
    Text text_;  // what the tip shows, which it does not copy
};

}  // namespace qvx::flexgrid
