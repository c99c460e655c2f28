// The reactions of the flat push button to its events.
#pragma once

#include "widgets/button/push_logic.h"

namespace qvx::buttons {

class ButtonLogic final : public PushLogic {
  public:
    bool Wants(int key, int shift) const override;

    bool Focused() const { return focused_; }

    ButtonActions LeftButtonDown() override;
    ButtonActions OtherButtonDown() override;
    ButtonActions MouseMove(const MouseMovement& movement) override;
    // Clicks only if a button went down here before and the mouse capture has not been lost since.
    ButtonActions MouseUp(Point point, Size face) override;
    ButtonActions CaptureLost() override;

    ButtonActions KeyDown(int key, int shift) override;
    ButtonActions KeyPress(char16_t) override { return {}; }
    ButtonActions KeyUp(int key, int shift, bool cursorInside) override;
    ButtonActions AccessKeyPress(int key) override;

    ButtonActions GotFocus() override;
    ButtonActions LostFocus() override;
    // The `Focus` property, which only affects the button's appearance.
    ButtonActions SetFocused(bool focused);
    ButtonActions Cancel() override;

  private:
    bool focused_ = false;
    bool pressed_ = false;    // by the left mouse button
    bool mouseDown_ = false;  // any mouse button went down here
    bool spaceHeld_ = false;
};

}  // namespace qvx::buttons
