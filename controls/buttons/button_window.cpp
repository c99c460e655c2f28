#include "controls/buttons/button_window.h"

#include <utility>

#include "common/keys.h"
#include "common/send_key.h"
#include "controls/buttons/access_key.h"
#include "win/dpi.h"
#include "win/gdi_surface.h"

namespace qvx::buttons {

namespace {

// Its own device context, because hosts are handed it.
constexpr WindowClass buttonClass{L"QvxButton", CS_OWNDC};

constexpr WPARAM anyMouseButton = MK_LBUTTON | MK_MBUTTON | MK_RBUTTON | MK_XBUTTON1 | MK_XBUTTON2;

}  // namespace

bool ButtonWindow::Create(HWND parent, int id, const Rect& bounds) {
    if (!Window::Create(buttonClass, L"", WS_CHILD | WS_TABSTOP | WS_CLIPSIBLINGS, 0, bounds, parent, id)) {
        return false;
    }
    dc_ = GetDC(Handle());
    Resize();
    EnableWindow(Handle(), look_.enabled);
    return true;
}

void ButtonWindow::SetCaption(Text caption) {
    look_.caption = std::move(caption);
    DrawButton(button_state::normal);
}

void ButtonWindow::SetFont(FontSpec font) {
    look_.font = std::move(font);
    DrawButton(button_state::normal);
}

void ButtonWindow::SetForeColor(OleColor color) {
    look_.foreColor = color;
    Invalidate();
}

void ButtonWindow::SetBackColor(OleColor color) {
    look_.backColor = color;
    Invalidate();
}

void ButtonWindow::SetBorderColor(OleColor color) {
    look_.borderColor = color;
    Invalidate();
}

void ButtonWindow::SetBehavior(Style behavior) {
    look_.behavior = behavior;
    Invalidate();
}

void ButtonWindow::SetDropDown(bool dropDown) {
    look_.dropDown = dropDown;
    Invalidate();
}

void ButtonWindow::SetFocusRect(bool focusRect) {
    look_.focusRect = focusRect;
    Invalidate();
}

void ButtonWindow::SetEnabled(bool enabled) {
    look_.enabled = enabled;
    if (Handle()) {
        EnableWindow(Handle(), enabled);
    }
    Perform(logic_.Cancel());
}

void ButtonWindow::SetFocused(bool focused) { Perform(logic_.SetFocused(focused)); }

void ButtonWindow::SetValue(bool value) {
    if (value) {
        Perform({ButtonAction::click});
    }
}

void ButtonWindow::DrawButton(int state) {
    image_.Draw(state, logic_.Focused());
    if (Handle()) {
        Invalidate();
        UpdateWindow(Handle());
    }
}

void ButtonWindow::DrawFocus() {
    image_.DrawFocus();
    Invalidate();
}

void ButtonWindow::AccessKeyPress(int key) { Perform(logic_.AccessKeyPress(key)); }

bool ButtonWindow::AnswersTo(char16_t character) const {
    return look_.enabled && IsAccessKey(look_.caption, character);
}

void ButtonWindow::ReleaseMouse() {
    if (Handle() && GetCapture() == Handle()) {
        releasing_ = true;
        ReleaseCapture();
        releasing_ = false;
    }
}

void ButtonWindow::Perform(const ButtonActions& actions) {
    for (const ButtonAction action : actions) {
        switch (action) {
            case ButtonAction::capture:
                if (GetCapture() != Handle()) {
                    SetCapture(Handle());
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

void ButtonWindow::TellFocus(bool focused) const {
    if (onFocus) {
        const auto tell = onFocus;
        tell(focused);
    }
}

bool ButtonWindow::CursorInside() const {
    POINT cursor{};
    RECT window{};
    return GetCursorPos(&cursor) && GetWindowRect(Handle(), &window) && PtInRect(&window, cursor);
}

void ButtonWindow::Resize() { look_.face = ClientArea(); }

void ButtonWindow::Paint() {
    const PaintScope paint(Handle());
    // Into a bitmap first: the faces are drawn in several layers.
    BackBuffer buffer;
    const HDC target = buffer.Prepare(paint.Dc(), {look_.face.right, look_.face.bottom});
    if (!target) {
        return;
    }
    {
        GdiSurface surface(target, WindowDpi(Handle()));
        image_.Paint(surface, look_);
    }
    buffer.CopyTo(paint.Dc(), look_.face);
}

LRESULT ButtonWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    const auto extent = [this] { return Size{look_.face.Width(), look_.face.Height()}; };
    switch (message) {
        case WM_PAINT:
            Paint();
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_SIZE:
            Resize();
            DrawButton(button_state::normal);
            return 0;
        case WM_SYSCOLORCHANGE:
        case WM_THEMECHANGED:
            Invalidate();
            return 0;
        case WM_LBUTTONDOWN: {
            const LifeWatch watch = Watch();
            SetFocus(Handle());
            if (watch.Alive() && Handle()) {
                Perform(logic_.LeftButtonDown());
            }
            return 0;
        }
        case WM_MOUSEMOVE:
            Perform(logic_.MouseMove(MousePoint(lParam), extent(), (wParam & MK_LBUTTON) != 0,
                                     (wParam & anyMouseButton) != 0));
            return 0;
        case WM_LBUTTONUP:
        case WM_MBUTTONUP:
        case WM_RBUTTONUP:
            Perform(logic_.MouseUp(MousePoint(lParam), extent()));
            return 0;
        case WM_CAPTURECHANGED:
            if (reinterpret_cast<HWND>(lParam) != Handle() && !releasing_) {
                Perform(logic_.CaptureLost());
            }
            return 0;
        case WM_GETDLGCODE:
            return DLGC_WANTARROWS;
        case WM_KEYDOWN: {
            bool swallowed = false;
            Perform(logic_.KeyDown(static_cast<int>(wParam), ShiftState(), swallowed));
            return 0;
        }
        case WM_KEYUP:
            Perform(logic_.KeyUp(static_cast<int>(wParam), ShiftState(), CursorInside()));
            return 0;
        case WM_SETFOCUS:
            Perform(logic_.GotFocus());
            TellFocus(true);
            return 0;
        case WM_KILLFOCUS:
            Perform(logic_.LostFocus());
            TellFocus(false);
            return 0;
        case WM_DESTROY:
            if (dc_) {
                ReleaseDC(Handle(), std::exchange(dc_, nullptr));
            }
            return 0;
        default:
            return Default(message, wParam, lParam);
    }
}

}  // namespace qvx::buttons
