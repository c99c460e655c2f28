// The reactions of a push button to the mouse, the keyboard and the focus. Each event returns what the window has to
// do, in that order; the click always comes last, because a host may destroy the button in it.
#pragma once

#include <vector>

#include "common/geometry.h"

namespace qvx::buttons {

enum class ButtonAction {
    capture,         // take the mouse capture
    releaseCapture,  // release it, if this button has it
    drawNormal,      // draw the button in this state
    drawHot,
    drawPressed,
    drawFocus,
    sendTab,       // SendKey Tab: to the next control
    sendShiftTab,  // SendKey Shift+Tab: to the previous one
    click,
};

using ButtonActions = std::vector<ButtonAction>;

struct MouseMovement {
    // The point and the face are in the same unit, from the face's corner.
    Point point;
    Size face;
    bool leftDown = false;
    bool anyDown = false;    // any of the mouse's buttons
    bool spaceHeld = false;  // the keyboard's own state, in whichever window the key went down
    bool active = false;     // whether this is the form's active control; only valid while the left button is down
};

class PushLogic {
  public:
    virtual ~PushLogic() = default;

    // Whether the button handles a key, so that hosts must not move the focus with it. `shift` here and below: bits of
    // common/keys.h.
    virtual bool Wants(int key, int shift) const = 0;

    virtual ButtonActions LeftButtonDown() = 0;
    // A mouse button other than the left one went down.
    virtual ButtonActions OtherButtonDown() = 0;
    virtual ButtonActions MouseMove(const MouseMovement& movement) = 0;
    // For any mouse button; in the units of MouseMovement.
    virtual ButtonActions MouseUp(Point point, Size face) = 0;
    // Another window has taken the mouse capture: what was begun with the mouse is cancelled.
    virtual ButtonActions CaptureLost() = 0;

    virtual ButtonActions KeyDown(int key, int shift) = 0;
    // A character that the keyboard produced.
    virtual ButtonActions KeyPress(char16_t character) = 0;
    // `cursorInside`: the cursor is over the button's window.
    virtual ButtonActions KeyUp(int key, int shift, bool cursorInside) = 0;
    // `key` is the access key, or Enter or Esc (as virtual keys) for a button that its form uses as the default or
    // cancel button.
    virtual ButtonActions AccessKeyPress(int key) = 0;

    virtual ButtonActions GotFocus() = 0;
    virtual ButtonActions LostFocus() = 0;
    // The button was disabled or hidden: what was begun is cancelled.
    virtual ButtonActions Cancel() = 0;
};

// A button's right and bottom edges count as inside.
constexpr bool InsideFace(Point p, Size face) {
    return p.x >= 0 && p.y >= 0 && p.x <= face.width && p.y <= face.height;
}

// The left and right arrow keys, when no other key is held, move the focus as Shift+Tab and Tab do.
bool MovesFocus(int key, int shift);
// Returns the action for such a key.
ButtonActions FocusMove(int key, int shift);

}  // namespace qvx::buttons
