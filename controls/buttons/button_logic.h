// How a push button answers the mouse, the keyboard and the focus. Each event returns what the window has to do, in
// that order; the click always comes last, because a host may destroy the button in it.
#pragma once

#include <vector>

#include "common/geometry.h"

namespace qvx::buttons {

enum class ButtonAction {
    capture,         // take the mouse
    releaseCapture,  // let it go, if this button has it
    drawNormal,      // DrawButton in that state
    drawHot,
    drawPressed,
    drawFocus,
    sendTab,       // SendKey Tab: to the next control
    sendShiftTab,  // SendKey Shift+Tab: to the previous one
    click,
};

using ButtonActions = std::vector<ButtonAction>;

class ButtonLogic {
  public:
    // Keys that end at the button, so that hosts must not move the focus by them.
    static bool Wants(int key, int shift);

    bool Focused() const { return focused_; }

    // Points and sizes in the same unit, from the face's corner. The button's edge itself counts as inside.
    ButtonActions LeftButtonDown();
    ButtonActions OtherButtonDown();
    ButtonActions MouseMove(Point point, Size face, bool leftDown, bool anyDown);
    // Any button; clicks only when a button went down here before and the mouse was not taken away since.
    ButtonActions MouseUp(Point point, Size face);
    // Someone else took the mouse: what was begun with it is called off.
    ButtonActions CaptureLost();

    // `shift`: bits of common/keys.h.
    ButtonActions KeyDown(int key, int shift);
    // `cursorInside`: the cursor is over the button's window.
    ButtonActions KeyUp(int key, int shift, bool cursorInside);
    // The access key, or Enter or Esc (as virtual keys) for a button that its form uses as the default or cancel one.
    ButtonActions AccessKeyPress(int key);

    ButtonActions GotFocus();
    ButtonActions LostFocus();
    // The `Focus` property: only how the button shows itself.
    ButtonActions SetFocused(bool focused);
    // The button was disabled: nothing that was begun goes on.
    ButtonActions Cancel();

  private:
    bool focused_ = false;
    bool pressed_ = false;    // by the left mouse button
    bool mouseDown_ = false;  // any mouse button went down here
    bool spaceHeld_ = false;
};

}  // namespace qvx::buttons
