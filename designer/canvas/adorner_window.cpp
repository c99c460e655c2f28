#include "designer/canvas/adorner_window.h"

#include <algorithm>

#include "win/dpi.h"
#include "win/gdi_surface.h"

namespace qvx::host::designer {

bool AdornerWindow::Open(HWND form) {
    static const WindowClass windowClass = {L"QvxDesignAdorners", 0};
    return Create(windowClass, L"", WS_CHILD | WS_CLIPSIBLINGS, 0, {0, 0, 10, 10}, form);
}

void AdornerWindow::Show(std::vector<Adorner> adorners) {
    adorners_ = std::move(adorners);
    if (adorners_.empty()) {
        ShowWindow(Handle(), SW_HIDE);
        return;
    }
    const int thick = std::max(Scaled(1, Handle()), 1);
    const std::vector<Rect> parts = PartsOf(adorners_, thick);
    const Rect inside = ClientArea();
    std::vector<char> memory(sizeof(RGNDATAHEADER) + parts.size() * sizeof(RECT));
    auto* data = reinterpret_cast<RGNDATA*>(memory.data());
    auto* rects = reinterpret_cast<RECT*>(data->Buffer);
    DWORD count = 0;
    for (const Rect& part : parts) {
        const Rect visible = part.Intersect(inside);
        if (!visible.Empty()) rects[count++] = ToRECT(visible);
    }
    data->rdh = {sizeof(RGNDATAHEADER), RDH_RECTANGLES, count, static_cast<DWORD>(count * sizeof(RECT)),
                 ToRECT(inside)};
    UniqueRegion region(
        ExtCreateRegion(nullptr, static_cast<DWORD>(sizeof(RGNDATAHEADER) + count * sizeof(RECT)), data));
    if (!region) return;
    // The window owns the region from now on.
    if (SetWindowRgn(Handle(), region.Get(), TRUE)) region.Detach();
    ShowWindow(Handle(), SW_SHOWNA);
    InvalidateRect(Handle(), nullptr, FALSE);
}

LRESULT AdornerWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_NCHITTEST:
            return HTTRANSPARENT;
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT: {
            const PaintScope paint(Handle());
            GdiSurface surface(paint.Dc(), WindowDpi(Handle()));
            PaintAdorners(surface, adorners_);
            return 0;
        }
        default:
            return Default(message, wParam, lParam);
    }
}

}  // namespace qvx::host::designer
