#include <utility>

#include "common/keys.h"
#include "widgets/button/push_element_win32.h"
#include "win/accessible.h"
#include "win/send_key.h"

namespace qvx::buttons {

namespace {

constexpr WPARAM anyMouseButton = MK_LBUTTON | MK_MBUTTON | MK_RBUTTON | MK_XBUTTON1 | MK_XBUTTON2;

}  // namespace

void PushElement::Attach(HWND window) {
    window_ = window;
    if (window_) {
        EnableWindow(window_, Look().enabled);
    }
}

void PushElement::Resize(Size pixels) {
    EditLook().face = {0, 0, pixels.width, pixels.height};
    Draw(ButtonAction::drawNormal);
}

void PushElement::SetCaption(Text caption) {
    EditLook().caption = std::move(caption);
    NotifyAssistive(EVENT_OBJECT_NAMECHANGE, window_, CHILDID_SELF);
    Draw(ButtonAction::drawNormal);
}

void PushElement::SetFont(FontSpec font) {
    EditLook().font = std::move(font);
    Draw(ButtonAction::drawNormal);
}

void PushElement::SetColor(OleColor PushLook::*color, OleColor value) {
    EditLook().*color = value;
    ColorChanged();
}

void PushElement::SetFocusRect(bool focusRect) {
    EditLook().focusRect = focusRect;
    Repaint(false);
}

void PushElement::SetEnabled(bool enabled) {
    EditLook().enabled = enabled;
    if (window_) {
        EnableWindow(window_, enabled);
    }
    Perform(Logic().Cancel());
}

void PushElement::FocusChanged(bool focused) { Perform(focused ? Logic().GotFocus() : Logic().LostFocus()); }

void PushElement::Repaint(bool now) {
    if (!window_) {
        return;
    }
    InvalidateRect(window_, nullptr, FALSE);
    if (now) {
        UpdateWindow(window_);
    }
}

void PushElement::ReleaseMouse() {
    if (window_ && GetCapture() == window_) {
        releasing_ = true;
        ReleaseCapture();
        releasing_ = false;
    }
}

void PushElement::Perform(const ButtonActions& actions) {
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
            case ButtonAction::drawHot:
            case ButtonAction::drawPressed:
            case ButtonAction::drawFocus:
                Draw(action);
                break;
            case ButtonAction::sendTab:
                SendKey(keys::tab, 0);
                break;
            case ButtonAction::sendShiftTab:
                SendKey(keys::tab, keys::shift);
                break;
            case ButtonAction::click:
                if (onClick) {
                    // The new look must be visible before handlers take their time.
                    if (window_) {
                        UpdateWindow(window_);
                    }
                    // A copy, since the owner may destroy the button inside.
                    const auto click = onClick;
                    click();
                }
                break;
        }
    }
}

bool PushElement::CursorInside() const {
    POINT cursor{};
    RECT bounds{};
    return GetCursorPos(&cursor) && GetWindowRect(window_, &bounds) && PtInRect(&bounds, cursor);
}

bool PushElement::IsInput(UINT message) {
    return (message >= WM_MOUSEFIRST && message <= WM_MOUSELAST) || message == WM_KEYDOWN || message == WM_KEYUP ||
           message == WM_CHAR || message == WM_GETDLGCODE || message == ButtonAccessibility::pressMessage;
}

std::optional<LRESULT> PushElement::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    PushLogic& logic = Logic();
    const Size face{Look().face.Width(), Look().face.Height()};
    switch (message) {
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK: {
            const LifeWatch watch(life_.Watch());
            if (GetFocus() != window_) {
                SetFocus(window_);
            }
            // The handlers of the control that lost the focus may have disabled, hidden or destroyed the button.
            if (watch.Alive() && TakesInput()) {
                Perform(logic.LeftButtonDown());
            }
            return 0;
        }
        case WM_RBUTTONDOWN:
        case WM_RBUTTONDBLCLK:
        case WM_MBUTTONDOWN:
        case WM_MBUTTONDBLCLK:
            Perform(logic.OtherButtonDown());
            return 0;
        case WM_MOUSEMOVE: {
            MouseMovement movement{MousePoint(lParam), face, (wParam & MK_LBUTTON) != 0, (wParam & anyMouseButton) != 0,
                                   IsKeyDown(VK_SPACE)};
            movement.active = movement.leftDown && Active();
            Perform(logic.MouseMove(movement));
            return 0;
        }
        case WM_LBUTTONUP:
        case WM_MBUTTONUP:
        case WM_RBUTTONUP:
            Perform(logic.MouseUp(MousePoint(lParam), face));
            return 0;
        case WM_CAPTURECHANGED:
            if (reinterpret_cast<HWND>(lParam) != window_ && !releasing_) {
                Perform(logic.CaptureLost());
            }
            return 0;
        case WM_SHOWWINDOW:
            // A button that is hidden under the mouse would keep the mouse capture.
            if (!wParam) {
                Perform(logic.Cancel());
            }
            return std::nullopt;
        case WM_GETDLGCODE: {
            // Keys that dialogs use themselves, but that the button handles.
            const auto* key = reinterpret_cast<const MSG*>(lParam);
            const bool wanted = key && key->message == WM_KEYDOWN && Wants(static_cast<int>(key->wParam), ShiftState());
            return DLGC_WANTARROWS | (wanted ? DLGC_WANTMESSAGE : 0);
        }
        case WM_GETOBJECT:
            return accessibility_.Answer(wParam, lParam);
        case ButtonAccessibility::pressMessage:
            if (TakesInput()) {
                Click();
            }
            return 0;
        case WM_KEYDOWN: {
            const int key = static_cast<int>(wParam);
            const int shift = ShiftState();
            if (!logic.Wants(key, shift)) {
                return std::nullopt;
            }
            Perform(logic.KeyDown(key, shift));
            return 0;
        }
        case WM_CHAR:
            Perform(logic.KeyPress(static_cast<char16_t>(wParam)));
            return 0;
        case WM_KEYUP:
            Perform(logic.KeyUp(static_cast<int>(wParam), ShiftState(), CursorInside()));
            return 0;
        default:
            return std::nullopt;
    }
}

}  // namespace qvx::buttons
