// The implementation of the flat push button in a window. Windows only.
#pragma once

#include "widgets/button/button_face.h"
#include "widgets/button/button_logic.h"
#include "widgets/button/push_element_win32.h"

namespace qvx::buttons {

class ButtonElement final : public PushElement {
  public:
    const ButtonLook& Look() const override { return look_; }
    void Paint(Surface& surface) const override { image_.Paint(surface, look_); }
    bool HasPopup() const override { return look_.dropDown; }

    void SetBehavior(Style behavior);
    void SetDropDown(bool dropDown);

    // Whether the button is drawn as focused, whatever window really has the focus.
    bool Focused() const { return logic_.Focused(); }
    void SetFocused(bool focused) { Perform(logic_.SetFocused(focused)); }
    // Paints one of the three states at once.
    void DrawButton(int state);
    // Paints the focus rectangle at once.
    void DrawFocus();
    // Whether a character typed with Alt is the button's access key.
    bool AnswersTo(char16_t character) const;

  protected:
    PushLook& EditLook() override { return look_; }
    PushLogic& Logic() override { return logic_; }
    void Draw(ButtonAction action) override;

  private:
    ButtonLook look_;
    ButtonLogic logic_;
    ButtonImage image_;
};

}  // namespace qvx::buttons
