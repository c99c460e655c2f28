#include "widgets/button/button_logic.h"

#include <utility>

#include "common/keys.h"

namespace qvx::buttons {

ButtonActions ButtonLogic::LeftButtonDown() {
    pressed_ = true;
    mouseDown_ = true;
    return {ButtonAction::capture, ButtonAction::drawPressed};
}

ButtonActions ButtonLogic::OtherButtonDown() {
    mouseDown_ = true;
    return {ButtonAction::capture};
}

ButtonActions ButtonLogic::MouseMove(const MouseMovement& movement) {
    if (spaceHeld_) {
        return {};
    }
    if (!InsideFace(movement.point, movement.face)) {
        return movement.anyDown ? ButtonActions{ButtonAction::drawNormal}
                                : ButtonActions{ButtonAction::releaseCapture, ButtonAction::drawNormal};
    }
    return {ButtonAction::capture, movement.leftDown ? ButtonAction::drawPressed : ButtonAction::drawHot};
}

ButtonActions ButtonLogic::MouseUp(Point point, Size face) {
    // A press that began elsewhere and was drawn over the button ends without a click.
    const bool begunHere = std::exchange(mouseDown_, false);
    pressed_ = false;
    // The mouse capture is released before the click: a window that the click opens needs it.
    ButtonActions actions{ButtonAction::releaseCapture, ButtonAction::drawNormal};
    if (begunHere && InsideFace(point, face)) {
        actions.push_back(ButtonAction::click);
    }
    return actions;
}

ButtonActions ButtonLogic::CaptureLost() {
    mouseDown_ = false;
    pressed_ = false;
    spaceHeld_ = false;
    return {ButtonAction::drawNormal};
}

bool ButtonLogic::Wants(int key, int shift) const {
    return MovesFocus(key, shift) || (key == keys::space && shift == 0);
}

ButtonActions ButtonLogic::KeyDown(int key, int shift) {
    if (key != keys::space || shift != 0) {
        return FocusMove(key, shift);
    }
    if (spaceHeld_) {
        return {};  // the keyboard repeats a held key
    }
    spaceHeld_ = true;
    return {ButtonAction::capture, ButtonAction::drawPressed};
}

ButtonActions ButtonLogic::KeyUp(int key, int shift, bool cursorInside) {
    // A space that went down elsewhere, in the window that opened this one for instance, does not click this button.
    if (key != keys::space || !spaceHeld_) {
        return {};
    }
    spaceHeld_ = false;
    ButtonActions actions;
    if (!pressed_ || !cursorInside) {
        actions.push_back(ButtonAction::drawNormal);
    }
    if (!pressed_) {
        actions.push_back(ButtonAction::releaseCapture);
        if (shift == 0) {
            actions.push_back(ButtonAction::click);
        }
    }
    return actions;
}

ButtonActions ButtonLogic::AccessKeyPress(int key) {
    if (spaceHeld_ || pressed_) {
        return {};
    }
    if (key == keys::escape || key == keys::enter) {
        return {ButtonAction::click};
    }
    focused_ = true;
    return {ButtonAction::drawNormal, ButtonAction::click};
}

ButtonActions ButtonLogic::GotFocus() {
    focused_ = true;
    return {ButtonAction::drawFocus};
}

ButtonActions ButtonLogic::LostFocus() {
    focused_ = false;
    if (spaceHeld_) {
        // The key will come up in another window.
        spaceHeld_ = false;
        return {ButtonAction::releaseCapture, ButtonAction::drawNormal};
    }
    return {ButtonAction::drawNormal};
}

ButtonActions ButtonLogic::SetFocused(bool focused) {
    focused_ = focused;
    return {ButtonAction::drawNormal};
}

ButtonActions ButtonLogic::Cancel() {
    mouseDown_ = false;
    pressed_ = false;
    spaceHeld_ = false;
    return {ButtonAction::releaseCapture, ButtonAction::drawNormal};
}

}  // namespace qvx::buttons
