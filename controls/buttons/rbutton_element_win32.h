// The implementation of the rounded two-state button in a window. Windows only.
#pragma once

#include <functional>

#include "controls/buttons/rbutton_face.h"
#include "controls/buttons/rbutton_logic.h"
#include "widgets/button/push_element_win32.h"

namespace qvx::buttons {

class RButtonElement final : public PushElement {
  public:
    // Whether the button is its form's active control. It is called whenever the button is painted: when the focus
    // moves between two controls, the one that loses it is notified before the form has another active control.
    std::function<bool()> isActive;

    const RButtonLook& Look() const override { return look_; }
    void Paint(Surface& surface) const override;

    // The change is visible when the button is next drawn.
    void SetOutline(OleColor RButtonLook::*outline, OleColor color) { look_.*outline = color; }
    // Cancels a press that has begun, and draws the idle state.
    void LetGo() { Perform(logic_.LetGo()); }
    void DrawFocus() { Repaint(false); }

  protected:
    PushLook& EditLook() override { return look_; }
    PushLogic& Logic() override { return logic_; }
    void Draw(ButtonAction action) override;
    bool Active() const override { return isActive(); }
    void ColorChanged() override { Draw(ButtonAction::drawNormal); }

  private:
    RButtonLook look_;
    RButtonLogic logic_;
    RButtonState state_ = RButtonState::idle;
};

}  // namespace qvx::buttons
