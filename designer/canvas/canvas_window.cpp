#include "designer/canvas/canvas_window.h"

#include <algorithm>

#include "win/dpi.h"
#include "win/gdi_surface.h"

namespace qvx::host::designer {

namespace {

constexpr int margin = 16;  // pixels at 96 dots per inch around the form

}  // namespace

CanvasWindow::CanvasWindow() = default;

CanvasWindow::~CanvasWindow() { Destroy(); }

bool CanvasWindow::Create(HWND parent, const Rect& bounds) {
    static const WindowClass windowClass = {L"QvxDesignCanvas", CS_DBLCLKS};
    return Window::Create(windowClass, L"Form",
                          WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPCHILDREN | WS_HSCROLL | WS_VSCROLL,
                          WS_EX_CLIENTEDGE, bounds, parent);
}

int CanvasWindow::HandleSize() const { return std::max(Scaled(7, Handle()), 7); }

void CanvasWindow::SetForm(HWND form) {
    if (form != form_) {
        overlay_.reset();
        adorners_.reset();
        form_ = form;
        offset_ = {};
        if (form) {
            overlay_ = std::make_unique<OverlayWindow>();
            overlay_->onMouse = [this](const Mouse& mouse) {
                if (onMouse) onMouse(mouse);
            };
            overlay_->onPress = [this] { ::SetFocus(Handle()); };
            overlay_->Open(form);
            adorners_ = std::make_unique<AdornerWindow>();
            adorners_->Open(form);
        }
    }
    Layout();
    RaiseOverlay();
}

void CanvasWindow::RaiseOverlay() {
    if (!form_) return;
    RECT inside{};
    GetClientRect(form_, &inside);
    for (const HWND window : {overlay_->Handle(), adorners_->Handle()}) {
        SetWindowPos(window, HWND_TOP, 0, 0, inside.right, inside.bottom, SWP_NOACTIVATE);
    }
}

void CanvasWindow::SetAdorners(std::vector<Adorner> adorners) {
    if (adorners_) adorners_->Show(std::move(adorners));
}

void CanvasWindow::SetFormSelected(bool selected) {
    if (formSelected_ == selected) return;
    formSelected_ = selected;
    Invalidate();
}

void CanvasWindow::SetCursor(WORD cursor) {
    if (overlay_) overlay_->cursor = cursor;
}

void CanvasWindow::CaptureMouse(bool capture) {
    if (!overlay_) return;
    if (capture) {
        SetCapture(overlay_->Handle());
    } else if (GetCapture() == overlay_->Handle()) {
        ReleaseCapture();
    }
}

Rect CanvasWindow::FormFrame() const {
    RECT frame{};
    GetWindowRect(form_, &frame);
    MapWindowPoints(nullptr, Handle(), reinterpret_cast<POINT*>(&frame), 2);
    return FromRECT(frame);
}

void CanvasWindow::Layout() {
    if (!Handle()) return;
    const int around = Scaled(margin, Handle());
    extent_ = {};
    if (form_) {
        const Rect frame = FormFrame();
        extent_ = {frame.Width() + 2 * around, frame.Height() + 2 * around};
    }
    // A bar that appears takes room from the other direction, so that the second round is final.
    for (int round = 0; round < 2; ++round) {
        const Rect client = ClientArea();
        for (const int bar : {SB_HORZ, SB_VERT}) {
            const bool across = bar == SB_HORZ;
            SCROLLINFO info{};
            info.cbSize = sizeof info;
            info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
            info.nMax = std::max((across ? extent_.width : extent_.height) - 1, 0);
            info.nPage = static_cast<UINT>(std::max(across ? client.Width() : client.Height(), 0));
            info.nPos = across ? offset_.x : offset_.y;
            SetScrollInfo(Handle(), bar, &info, TRUE);
        }
    }
    ScrollTo(offset_);
    RaiseOverlay();
}

void CanvasWindow::ScrollTo(Point offset) {
    const Rect client = ClientArea();
    offset_.x = std::clamp(offset.x, 0, std::max(extent_.width - client.Width(), 0));
    offset_.y = std::clamp(offset.y, 0, std::max(extent_.height - client.Height(), 0));
    SetScrollPos(Handle(), SB_HORZ, offset_.x, TRUE);
    SetScrollPos(Handle(), SB_VERT, offset_.y, TRUE);
    if (!form_) return;
    const int around = Scaled(margin, Handle());
    SetWindowPos(form_, nullptr, around - offset_.x, around - offset_.y, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_SHOWWINDOW);
    Invalidate();
}

void CanvasWindow::Scroll(int bar, WPARAM wParam) {
    const bool across = bar == SB_HORZ;
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_ALL;
    GetScrollInfo(Handle(), bar, &info);
    const int line = Scaled(24, Handle());
    const int page = std::max(static_cast<int>(info.nPage) - line, line);
    int position = info.nPos;
    switch (LOWORD(wParam)) {
        case SB_LINEUP:
            position -= line;
            break;
        case SB_LINEDOWN:
            position += line;
            break;
        case SB_PAGEUP:
            position -= page;
            break;
        case SB_PAGEDOWN:
            position += page;
            break;
        case SB_THUMBTRACK:
        case SB_THUMBPOSITION:
            position = info.nTrackPos;
            break;
        case SB_TOP:
            position = 0;
            break;
        case SB_BOTTOM:
            position = info.nMax;
            break;
        default:
            break;
    }
    ScrollTo(across ? Point{position, offset_.y} : Point{offset_.x, position});
}

void CanvasWindow::Reveal(const Rect& area) {
    if (!form_) return;
    RECT rect = ToRECT(area.Inflated(HandleSize(), HandleSize()));
    MapWindowPoints(form_, Handle(), reinterpret_cast<POINT*>(&rect), 2);
    const Rect client = ClientArea();
    const auto shift = [](int from, int to, int room) {
        if (from < 0) return from;
        if (to > room) return std::min(from, to - room);
        return 0;
    };
    const Point by{shift(rect.left, rect.right, client.Width()), shift(rect.top, rect.bottom, client.Height())};
    if (by.x || by.y) ScrollTo({offset_.x + by.x, offset_.y + by.y});
}

std::optional<Grip> CanvasWindow::FormHandleAt(Point point) const {
    if (!form_ || !formSelected_) return std::nullopt;
    const auto handle = GripAt(FormFrame(), point, HandleSize());
    const bool sizes = handle == Grip::right || handle == Grip::bottom || handle == Grip::bottomRight;
    return sizes ? handle : std::nullopt;
}

void CanvasWindow::Paint() {
    const PaintScope paint(Handle());
    const Dpi dpi = WindowDpi(Handle());
    GdiSurface surface(paint.Dc(), dpi);
    constexpr OleColor workspace = 0x8000000C;
    surface.FillRect(ClientArea(), workspace);
    if (!form_ || !formSelected_) return;
    const Rect frame = FormFrame();
    for (int i = 0; i < handleCount; ++i) {
        const auto handle = static_cast<Grip>(i);
        const bool sizes = handle == Grip::right || handle == Grip::bottom || handle == Grip::bottomRight;
        const Rect area = GripArea(frame, handle, HandleSize());
        surface.FillRect(area, sizes && GetFocus() == this->Handle() ? colors::highlight : colors::windowBackground);
        surface.FrameRect(area, sizes ? colors::windowBackground : colors::grayText);
    }
    if (formDrag_) surface.FrameRect(formOutline_, colors::highlight);
}

void CanvasWindow::DragForm(UINT message, Point at) {
    const Rect frame = FormFrame();
    Rect outline = frame;
    if (*formDrag_ != Grip::bottom) outline.right = std::max(frame.right + at.x - formDragFrom_.x, frame.left + 80);
    if (*formDrag_ != Grip::right) outline.bottom = std::max(frame.bottom + at.y - formDragFrom_.y, frame.top + 40);
    if (message == WM_MOUSEMOVE) {
        formOutline_ = outline;
        Invalidate();
        return;
    }
    formDrag_.reset();
    ReleaseCapture();
    Invalidate();
    RECT inside{};
    GetClientRect(form_, &inside);
    const Size size{static_cast<int>(inside.right) + outline.Width() - frame.Width(),
                    static_cast<int>(inside.bottom) + outline.Height() - frame.Height()};
    if (onFormSize && !(outline == frame)) onFormSize(size);
}

LRESULT CanvasWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_SIZE:
        case WM_DPICHANGED_AFTERPARENT:
            Layout();
            return 0;
        case WM_HSCROLL:
            Scroll(SB_HORZ, wParam);
            return 0;
        case WM_VSCROLL:
            Scroll(SB_VERT, wParam);
            return 0;
        case WM_MOUSEWHEEL: {
            const int by = -GET_WHEEL_DELTA_WPARAM(wParam) * Scaled(72, Handle()) / WHEEL_DELTA;
            const bool across = (GET_KEYSTATE_WPARAM(wParam) & MK_SHIFT) != 0;
            ScrollTo(across ? Point{offset_.x + by, offset_.y} : Point{offset_.x, offset_.y + by});
            return 0;
        }
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT:
            Paint();
            return 0;
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK: {
            ::SetFocus(Handle());
            const Point at = MousePoint(lParam);
            if (const auto handle = FormHandleAt(at)) {
                formDrag_ = handle;
                formDragFrom_ = at;
                formOutline_ = FormFrame();
                SetCapture(Handle());
            } else if (onForm) {
                onForm(message == WM_LBUTTONDBLCLK);
            }
            return 0;
        }
        case WM_MOUSEMOVE:
        case WM_LBUTTONUP:
            if (formDrag_) DragForm(message, MousePoint(lParam));
            return 0;
        case WM_CAPTURECHANGED:
            formDrag_.reset();
            Invalidate();
            return 0;
        case WM_SETCURSOR: {
            POINT point{};
            GetCursorPos(&point);
            ScreenToClient(Handle(), &point);
            const auto handle = FormHandleAt({static_cast<int>(point.x), static_cast<int>(point.y)});
            if (LOWORD(lParam) != HTCLIENT || !handle) return Default(message, wParam, lParam);
            ShowCursorOf(CursorOf(*handle));
            return TRUE;
        }
        case WM_GETDLGCODE:
            return DLGC_WANTALLKEYS;
        case WM_KEYDOWN:
        case WM_SYSKEYDOWN:
            if (onKey && onKey(static_cast<int>(wParam), ShiftState())) return 0;
            return Default(message, wParam, lParam);
        case WM_CONTEXTMENU:
            // This one comes from the keyboard; the mouse's comes through the overlay.
            if (onMouse) onMouse({MouseAction::menu, {-1, -1}});
            return 0;
        case WM_SETFOCUS:
        case WM_KILLFOCUS:
            if (onFocus) onFocus();
            Invalidate();
            return 0;
        default:
            return Default(message, wParam, lParam);
    }
}

}  // namespace qvx::host::designer
