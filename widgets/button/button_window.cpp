#include "widgets/button/button_window.h"

#include "win/dpi.h"
#include "win/gdi_surface.h"

namespace qvx::buttons {

namespace {

constexpr WindowClass buttonClass{L"QvxButton", 0};

}  // namespace

bool ButtonWindow::Create(HWND parent, int id, const Rect& bounds) {
    if (!Window::Create(buttonClass, L"", WS_CHILD | WS_TABSTOP | WS_CLIPSIBLINGS, 0, bounds, parent, id)) {
        return false;
    }
    button_.Attach(Handle());
    button_.Resize({bounds.Width(), bounds.Height()});
    return true;
}

void ButtonWindow::Paint() {
    const Rect client = ClientArea();
    BackBuffer buffer;
    BufferedPaint paint(Handle(), WindowDpi(Handle()), buffer, {client.right, client.bottom});
    button_.Paint(paint.Surface());
}

void ButtonWindow::NotifyFocus(bool focused) {
    const LifeWatch watch = Watch();
    button_.FocusChanged(focused);
    if (watch.Alive() && onFocus) {
        const auto tell = onFocus;
        tell(focused);
    }
}

LRESULT ButtonWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT:
            Paint();
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_SIZE:
            button_.Resize({LOWORD(lParam), HIWORD(lParam)});
            return 0;
        case WM_SYSCOLORCHANGE:
        case WM_THEMECHANGED:
            Invalidate();
            return 0;
        case WM_SETFOCUS:
            NotifyFocus(true);
            return 0;
        case WM_KILLFOCUS:
            NotifyFocus(false);
            return 0;
        default:
            break;
    }
    // The click may have destroyed the button, but only for messages that the element handles.
    if (const auto answer = button_.HandleMessage(message, wParam, lParam)) {
        return *answer;
    }
    return Default(message, wParam, lParam);
}

}  // namespace qvx::buttons
