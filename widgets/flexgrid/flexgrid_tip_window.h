// The tool tip of the cell under the pointer.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include "common/geometry.h"
#include "common/text.h"
#include "widgets/flexgrid/hit_test.h"

namespace qvx::flexgrid {

// One tool tip for all cells of a window, created a moment after the pointer is first over a cell: a grid that appears
// under the pointer is drawn before. When the pointer has come to rest, the tip asks the window for its text with
// WM_NOTIFY (QuestionOf). Points are pixels of the window's client area.
class CellTip {
  public:
    CellTip() = default;
    ~CellTip() { Destroy(); }
    CellTip(const CellTip&) = delete;
    CellTip& operator=(const CellTip&) = delete;

    // The pointer has moved over `window`; moving to another cell hides the tip of the last one. With `rightToLeft`,
    // texts are laid out from right to left.
    void Follow(HWND window, const Hit& cell, Point point, bool rightToLeft);
    // The window's timer that creates the tip; its message is answered with Create and, when that returns true, with
    // Follow.
    static constexpr UINT_PTR creationTimer = 2;
    bool Create(HWND window);
    // A button was pressed or released, which hides the tip as well.
    void Press(UINT message, Point point) { Relay(message, point); }
    // Returns the tip's question in the WM_NOTIFY of that lParam; null when it is another window's or no question.
    NMTTDISPINFOW* QuestionOf(LPARAM lParam) const;
    // Sets the text; an empty text shows no tip.
    void Answer(NMTTDISPINFOW& question, Text text);
    // To be called when the window is destroyed; Follow creates a new tip for the next window.
    void Destroy();

  private:
    void SendToolMessage(UINT message);
    void Relay(UINT message, Point point);

    HWND tip_ = nullptr;
    HWND window_ = nullptr;  // that the tip is for
    bool waiting_ = false;   // for the timer
    bool rightToLeft_ = false;
    Hit cell_;
    Text text_;  // the displayed text, which the system does not copy
};

}  // namespace qvx::flexgrid
