// The rounded two-state button's working parts in a window. Windows only.
#pragma once

#include <functional>

#include "controls/buttons/rbutton_face.h"
#include "controls/buttons/rbutton_logic.h"
#include "widgets/button/push_element_win32.h"

namespace qvx::buttons {

class RButtonElement final : public PushElement {
  public:
    // Whether the button is its form's active control. It is asked whenever the button is painted: of two controls that
    // hand the focus on, the one that loses it hears of that before the form has another active control.
    std::function<bool()> isActive;

    const RButtonLook& Look() const override { return look_; }
    void Paint(Surface& surface) const override;

    // Not drawn before the button is.
    void SetOutline(OleColor RButtonLook::*outline, OleColor color) { look_.*outline = color; }
    // What was begun is no click, and the idle state is drawn.
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
