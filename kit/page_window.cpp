#include "kit/page_window.h"

#include "com/guard.h"
#include "win/dpi.h"
#include "win/gdi_surface.h"

namespace qvx {
namespace {

// Some frames give a page more room than they show of it, and have become smaller by the time the page is visible.
RECT Visible(HWND parent, const RECT& bounds) {
    RECT inside{};
    RECT shown{};
    return GetClientRect(parent, &inside) && IntersectRect(&shown, &inside, &bounds) ? shown : bounds;
}

}  // namespace

const FontSpec PageWindow::font{u"Tahoma", 8.25};

void PageWindow::CreateIn(HWND parent, const RECT& bounds) {
    bounds_ = bounds;
    if (!Create(windowClass_, L"", WS_CHILD | WS_CLIPCHILDREN, WS_EX_CONTROLPARENT, FromRECT(Visible(parent, bounds)),
                parent) ||
        !Build()) {
        throw ComError(E_FAIL);
    }
    Layout();
}

void PageWindow::MoveTo(const RECT& bounds) {
    bounds_ = bounds;
    Fit();
}

void PageWindow::Fit() const {
    const RECT place = Visible(GetParent(Handle()), bounds_);
    SetWindowPos(Handle(), nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

LRESULT PageWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_SIZE:
        case WM_DPICHANGED_AFTERPARENT:
            Layout();
            return 0;
        case WM_SETFOCUS:
            TakeFocus();
            return 0;
        case WM_PAINT: {
            Fit();
            const PaintScope paint(Handle());
            const Dpi dpi = WindowDpi(Handle());
            GdiSurface surface(paint.Dc(), dpi);
            surface.FillRect(ClientArea(), colors::buttonFace);
            Draw(surface, dpi);
            return 0;
        }
        case WM_ERASEBKGND:
            return 1;
        default:
            return Default(message, wParam, lParam);
    }
}

}  // namespace qvx
