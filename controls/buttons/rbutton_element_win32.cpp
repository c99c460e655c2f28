#include "controls/buttons/rbutton_element_win32.h"

#include <utility>

namespace qvx::buttons {

void RButtonElement::Paint(Surface& surface) const { DrawRButton(surface, look_, state_, isActive()); }

void RButtonElement::Draw(ButtonAction action) {
    RButtonState state = state_;
    switch (action) {
        case ButtonAction::drawHot:
            state = RButtonState::raised;
            break;
        case ButtonAction::drawPressed:
            state = RButtonState::held;
            break;
        case ButtonAction::drawFocus:
            return DrawFocus();
        default:
            state = RButtonState::idle;
            break;
    }
    // Every movement over the button requests the same picture.
    if (std::exchange(state_, state) != state || state == RButtonState::idle) {
        Repaint(false);
    }
}

}  // namespace qvx::buttons
