#include <utility>

#include "common/keys.h"
#include "common/send_key.h"
#include "controls/buttons/access_key.h"
#include "controls/buttons/button_element.h"
#include "win/accessible.h"

namespace qvx::buttons {

namespace {

constexpr WPARAM anyMouseButton = MK_LBUTTON | MK_MBUTTON | MK_RBUTTON | MK_XBUTTON1 | MK_XBUTTON2;

}  // namespace

void ButtonElement::Attach(HWND window) {
    window_ = window;
    if (window_) {
        EnableWindow(window_, look_.enabled);
    }
}

void ButtonElement::Resize(Size pixels) {
    look_.face = {0, 0, pixels.width, pixels.height};
    DrawButton(button_state::normal);
}

void ButtonElement::SetCaption(Text caption) {
    look_.caption = std::move(caption);
    TellAssistive(EVENT_OBJECT_NAMECHANGE, window_, CHILDID_SELF);
    DrawButton(button_state::normal);
}

void ButtonElement::SetFont(FontSpec font) {
    look_.font = std::move(font);
    DrawButton(button_state::normal);
}

void ButtonElement::SetForeColor(OleColor color) {
    look_.foreColor = color;
    Repaint(false);
}

void ButtonElement::SetBackColor(OleColor color) {
    look_.backColor = color;
    Repaint(false);
}

void ButtonElement::SetBorderColor(OleColor color) {
    look_.borderColor = color;
    Repaint(false);
}

void ButtonElement::SetBehavior(Style behavior) {
    look_.behavior = behavior;
    Repaint(false);
}

void ButtonElement::SetDropDown(bool dropDown) {
    look_.dropDown = dropDown;
    Repaint(false);
}

void ButtonElement::SetFocusRect(bool focusRect) {
    look_.focusRect = focusRect;
    Repaint(false);
}

void ButtonElement::SetEnabled(bool enabled) {
    look_.enabled = enabled;
    if (window_) {
        EnableWindow(window_, enabled);
    }
    Perform(logic_.Cancel());
}

void ButtonElement::SetFocused(bool focused) { Perform(logic_.SetFocused(focused)); }

void ButtonElement::SetValue(bool value) {
    if (value) {
        Perform({ButtonAction::click});
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

void ButtonElement::AccessKeyPress(int key) { Perform(logic_.AccessKeyPress(key)); }

bool ButtonElement::AnswersTo(char16_t character) const {
    return look_.enabled && IsAccessKey(look_.caption, character);
}

void ButtonElement::FocusChanged(bool focused) { Perform(focused ? logic_.GotFocus() : logic_.LostFocus()); }

void ButtonElement::Repaint(bool now) {
    if (!window_) {
        return;
    }
    InvalidateRect(window_, nullptr, FALSE);
    if (now) {
        UpdateWindow(window_);
    }
}

void ButtonElement::ReleaseMouse() {
    if (window_ && GetCapture() == window_) {
        releasing_ = true;
        ReleaseCapture();
        releasing_ = false;
    }
}

void ButtonElement::Perform(const ButtonActions& actions) {
    for (const ButtonAction action : actions) {
        switch (action) {
            case ButtonAction::capture:
                if (window_ && GetCapture() != window_) {
                    SetCapture(window_);
                }
                break;
            case ButtonAction::releaseCapture:
                ReleaseMouse();
                break;
            case ButtonAction::drawNormal:
                DrawButton(button_state::normal);
                break;
            case ButtonAction::drawHot:
                DrawButton(button_state::hot);
                break;
            case ButtonAction::drawPressed:
                DrawButton(button_state::pressed);
                break;
            case ButtonAction::drawFocus:
                DrawFocus();
                break;
            case ButtonAction::sendTab:
                SendKey(keys::tab, 0);
                break;
            case ButtonAction::sendShiftTab:
                SendKey(keys::tab, keys::shift);
                break;
            case ButtonAction::click:
                if (onClick) {
                    // A copy, since the owner may destroy the button inside.
                    const auto click = onClick;
                    click();
                }
                break;
        }
    }
}

bool ButtonElement::CursorInside() const {
    POINT cursor{};
    RECT bounds{};
    return GetCursorPos(&cursor) && GetWindowRect(window_, &bounds) && PtInRect(&bounds, cursor);
}

bool ButtonElement::IsInput(UINT message) {
    return (message >= WM_MOUSEFIRST && message <= WM_MOUSELAST) || message == WM_KEYDOWN || message == WM_KEYUP ||
           message == WM_GETDLGCODE || message == ButtonAccessibility::pressMessage;
}

std::optional<LRESULT> ButtonElement::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    const Size face{look_.face.Width(), look_.face.Height()};
    switch (message) {
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK: {
            const LifeWatch watch(life_.Watch());
            if (GetFocus() != window_) {
                SetFocus(window_);
            }
            // The handlers of who loses the focus may have disabled, hidden or destroyed the button.
            if (watch.Alive() && TakesInput()) {
                Perform(logic_.LeftButtonDown());
            }
            return 0;
        }
        case WM_RBUTTONDOWN:
        case WM_RBUTTONDBLCLK:
        case WM_MBUTTONDOWN:
        case WM_MBUTTONDBLCLK:
            Perform(logic_.OtherButtonDown());
            return 0;
        case WM_MOUSEMOVE:
            Perform(
                logic_.MouseMove(MousePoint(lParam), face, (wParam & MK_LBUTTON) != 0, (wParam & anyMouseButton) != 0));
            return 0;
        case WM_LBUTTONUP:
        case WM_MBUTTONUP:
        case WM_RBUTTONUP:
            Perform(logic_.MouseUp(MousePoint(lParam), face));
            return 0;
        case WM_CAPTURECHANGED:
            if (reinterpret_cast<HWND>(lParam) != window_ && !releasing_) {
                Perform(logic_.CaptureLost());
            }
            return 0;
        case WM_GETDLGCODE:
            return DLGC_WANTARROWS;
        case WM_GETOBJECT:
            return accessibility_.Answer(wParam, lParam);
        case ButtonAccessibility::pressMessage:
            if (TakesInput()) {
                SetValue(true);
            }
            return 0;
        case WM_KEYDOWN: {
            const int key = static_cast<int>(wParam);
            const int shift = ShiftState();
            if (!ButtonLogic::Wants(key, shift)) {
                return std::nullopt;
            }
            Perform(logic_.KeyDown(key, shift));
            return 0;
        }
        case WM_KEYUP:
            Perform(logic_.KeyUp(static_cast<int>(wParam), ShiftState(), CursorInside()));
            return 0;
        default:
            return std::nullopt;
    }
}

}  // namespace qvx::buttons
