// The reactions of the rounded two-state button to its events.
#pragma once

#include "widgets/button/push_logic.h"

namespace qvx::buttons {

class RButtonLogic final : public PushLogic {
  public:
    bool Wants(int key, int shift) const override;

    ButtonActions LeftButtonDown() override;
    ButtonActions OtherButtonDown() override;
    // A press whose mouse left the button and returns continues, if the button is its form's active control.
    ButtonActions MouseMove(const MouseMovement& movement) override;
    ButtonActions MouseUp(Point point, Size face) override;
    ButtonActions CaptureLost() override;

    ButtonActions KeyDown(int key, int shift) override;
    ButtonActions KeyPress(char16_t character) override;
    ButtonActions KeyUp(int key, int shift, bool cursorInside) override;
    ButtonActions AccessKeyPress(int key) override;

    ButtonActions GotFocus() override;
    ButtonActions LostFocus() override;
    ButtonActions Cancel() override;
    // For the program's own SetFocus and RemoveFocus: cancels a press that has begun.
    ButtonActions LetGo();

  private:
    bool pressed_ = false;    // held down, by mouse or Space
    bool mouseHeld_ = false;  // the left mouse button went down here and has not come up yet
    // Space went down here and will click when it comes up, even if another key that comes up meanwhile ends the
    // pressed look.
    bool spaceClicks_ = false;
};

}  // namespace qvx::buttons
