#include "widgets/button/button_element_win32.h"

#include "widgets/button/access_key.h"

namespace qvx::buttons {

void ButtonElement::SetBehavior(Style behavior) {
    look_.behavior = behavior;
    Repaint(false);
}

void ButtonElement::SetDropDown(bool dropDown) {
    look_.dropDown = dropDown;
    Repaint(false);
}

void ButtonElement::Draw(ButtonAction action) {
    switch (action) {
        case ButtonAction::drawHot:
            return DrawButton(button_state::hot);
        case ButtonAction::drawPressed:
            return DrawButton(button_state::pressed);
        case ButtonAction::drawFocus:
            return DrawFocus();
        default:
            return DrawButton(button_state::normal);
    }
}

void ButtonElement::DrawButton(int state) {
    image_.Draw(state, logic_.Focused());
    Repaint(true);
}

void ButtonElement::DrawFocus() {
    image_.DrawFocus();
    Repaint(false);
}

bool ButtonElement::AnswersTo(char16_t character) const {
    return look_.enabled && IsAccessKey(look_.caption, character);
}

}  // namespace qvx::buttons
