#include "host/design_box_window.h"

#include "host/form_window.h"
#include "win/dpi.h"
#include "win/gdi_surface.h"

namespace qvx::host {

bool DesignBox::Open(HWND parent, const RECT& bounds, Text word, bool broken) {
    word_ = std::move(word);
    broken_ = broken;
    static const WindowClass windowClass = {L"QvxDesignBox", CS_HREDRAW | CS_VREDRAW};
    return Create(windowClass, L"", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, 0, FromRECT(bounds), parent);
}

void DesignBox::Paint() {
    const PaintScope paint(Handle());
    const Dpi dpi = WindowDpi(Handle());
    GdiSurface surface(paint.Dc(), dpi);
    const Rect area = ClientArea();
    surface.FillRect(area, broken_ ? colors::windowBackground : colors::buttonFace);
    if (broken_) {
        surface.DrawLine({area.left, area.top}, {area.right, area.bottom}, colors::grayText, 1);
        surface.DrawLine({area.left, area.bottom - 1}, {area.right, area.top - 1}, colors::grayText, 1);
        surface.FrameRect(area, colors::grayText);
    } else {
        surface.DrawEdge(area, EDGE_RAISED, BF_RECT);
    }
    FontSpec font;
    const Size text = surface.MeasureText(word_, font, 0, DT_SINGLELINE | DT_NOPREFIX);
    const Size room{std::min(text.width + 8, area.Width() - 4), std::min(text.height + 4, area.Height() - 4)};
    const int x = (area.Width() - room.width) / 2;
    const int y = (area.Height() - room.height) / 2;
    const Rect label{x, y, x + room.width, y + room.height};
    if (broken_) surface.FillRect(label, colors::windowBackground);
    surface.DrawLabel(word_, label, font, broken_ ? colors::windowText : colors::buttonText,
                      DT_SINGLELINE | DT_NOPREFIX | DT_CENTER | DT_VCENTER | DT_END_ELLIPSIS);
}

LRESULT DesignBox::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT:
            Paint();
            return 0;
        case WM_ERASEBKGND:
            return 1;
        default:
            return Default(message, wParam, lParam);
    }
}

BrokenControl::BrokenControl(HostForm& form, const Block& block, FormControl* container, Text reason)
    : FormControl(form, block, container), reason_(std::move(reason)) {
    box_.Open(form.ParentWindow(*this), PixelBounds(), ClassName(), true);
}

BrokenControl::~BrokenControl() = default;

void BrokenControl::ApplyBounds(const RECT& pixels) {
    SetWindowPos(box_.Handle(), nullptr, pixels.left, pixels.top, pixels.right - pixels.left,
                 pixels.bottom - pixels.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace qvx::host
