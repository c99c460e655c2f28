#include "designer/canvas/overlay_window.h"

namespace qvx::host::designer {

WORD CursorOf(Grip handle) {
    switch (handle) {
        case Grip::topLeft:
        case Grip::bottomRight:
            return 32642;
        case Grip::topRight:
        case Grip::bottomLeft:
            return 32643;
        case Grip::left:
        case Grip::right:
            return 32644;
        default:
            return 32645;
    }
}

void ShowCursorOf(WORD cursor) { ::SetCursor(LoadCursorW(nullptr, MAKEINTRESOURCEW(cursor))); }

bool OverlayWindow::Open(HWND form) {
    static const WindowClass windowClass = {L"QvxDesignOverlay", CS_DBLCLKS};
    return Create(windowClass, L"", WS_CHILD | WS_VISIBLE, WS_EX_TRANSPARENT, {0, 0, 10, 10}, form);
}

LRESULT OverlayWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_LBUTTONDOWN:
            if (onPress) onPress();
            return Notify(MouseAction::press, wParam, lParam);
        case WM_LBUTTONDBLCLK:
            if (onPress) onPress();
            return Notify(MouseAction::doublePress, wParam, lParam);
        case WM_MOUSEMOVE:
            return Notify(MouseAction::move, wParam, lParam);
        case WM_LBUTTONUP:
            return Notify(MouseAction::release, wParam, lParam);
        case WM_RBUTTONDOWN:
            if (onPress) onPress();
            return 0;
        case WM_RBUTTONUP:
            return Notify(MouseAction::menu, wParam, lParam);
        case WM_CAPTURECHANGED:
            return Notify(MouseAction::cancel, 0, 0);
        case WM_MOUSEACTIVATE:
            return MA_ACTIVATE;
        case WM_SETCURSOR:
            ShowCursorOf(cursor);
            return TRUE;
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT:
            ValidateRect(Handle(), nullptr);
            return 0;
        default:
            return Default(message, wParam, lParam);
    }
}

LRESULT OverlayWindow::Notify(MouseAction action, WPARAM keys, LPARAM place) {
    Mouse mouse;
    mouse.action = action;
    mouse.at = MousePoint(place);
    mouse.shift = (keys & MK_SHIFT) != 0;
    mouse.control = (keys & MK_CONTROL) != 0;
    mouse.alt = IsKeyDown(VK_MENU);
    mouse.held = (keys & MK_LBUTTON) != 0;
    if (onMouse) onMouse(mouse);
    return 0;
}

}  // namespace qvx::host::designer
