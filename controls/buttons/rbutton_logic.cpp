#include "controls/buttons/rbutton_logic.h"

#include <utility>

#include "common/keys.h"

namespace qvx::buttons {

bool RButtonLogic::Wants(int key, int shift) const {
    return MovesFocus(key, shift) || key == keys::space || key == keys::enter;
}

ButtonActions RButtonLogic::LeftButtonDown() {
    pressed_ = true;
    mouseHeld_ = true;
    return {ButtonAction::capture, ButtonAction::drawPressed};
}

ButtonActions RButtonLogic::OtherButtonDown() { return {ButtonAction::capture}; }

ButtonActions RButtonLogic::MouseMove(const MouseMovement& movement) {
    if (!movement.spaceHeld) {
        spaceClicks_ = false;  // the key came up where no event reported it
        pressed_ = pressed_ && movement.anyDown;
    }
    if (movement.leftDown && movement.active) {
        pressed_ = true;
    }
    if (movement.spaceHeld) {
        return {};
    }
    if (InsideFace(movement.point, movement.face)) {
        return {ButtonAction::capture, pressed_ ? ButtonAction::drawPressed : ButtonAction::drawHot};
    }
    pressed_ = false;
    mouseHeld_ = false;
    return movement.leftDown ? ButtonActions{ButtonAction::drawNormal}
                             : ButtonActions{ButtonAction::releaseCapture, ButtonAction::drawNormal};
}

ButtonActions RButtonLogic::MouseUp(Point point, Size face) {
    mouseHeld_ = false;
    spaceClicks_ = false;
    const bool inside = InsideFace(point, face);
    if (!std::exchange(pressed_, false)) {
        // Over the button, the mouse stays captured, so that the button notices when the mouse leaves.
        return inside ? ButtonActions{} : ButtonActions{ButtonAction::releaseCapture};
    }
    // The mouse capture is released before the click: a window that the click opens needs it.
    ButtonActions actions{ButtonAction::releaseCapture, ButtonAction::drawNormal};
    if (inside) {
        actions.push_back(ButtonAction::click);
    }
    return actions;
}

ButtonActions RButtonLogic::CaptureLost() {
    mouseHeld_ = false;
    return LetGo();
}

ButtonActions RButtonLogic::KeyDown(int key, int shift) { return FocusMove(key, shift); }

ButtonActions RButtonLogic::KeyPress(char16_t character) {
    if (character == keys::enter) {
        return {ButtonAction::click};
    }
    if (character != keys::space) {
        return {};
    }
    pressed_ = true;
    spaceClicks_ = true;
    return {ButtonAction::drawPressed};
}

ButtonActions RButtonLogic::KeyUp(int key, int, bool) {
    if (mouseHeld_) {
        return {};
    }
    pressed_ = false;
    // A space that went down elsewhere, in the window that opened this one for instance, does not click this button.
    if (key == keys::space && std::exchange(spaceClicks_, false)) {
        return {ButtonAction::drawNormal, ButtonAction::click};
    }
    return {ButtonAction::drawNormal};
}

ButtonActions RButtonLogic::AccessKeyPress(int) { return {ButtonAction::drawNormal, ButtonAction::click}; }

ButtonActions RButtonLogic::GotFocus() { return {ButtonAction::drawFocus}; }

ButtonActions RButtonLogic::LostFocus() { return LetGo(); }

ButtonActions RButtonLogic::LetGo() {
    pressed_ = false;
    spaceClicks_ = false;
    return {ButtonAction::drawNormal};
}

ButtonActions RButtonLogic::Cancel() {
    pressed_ = false;
    mouseHeld_ = false;
    spaceClicks_ = false;
    return {ButtonAction::releaseCapture, ButtonAction::drawNormal};
}

}  // namespace qvx::buttons
