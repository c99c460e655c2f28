// The window itself: its lifetime and its messages. Positions for hosts are in flexgrid_geometry_window.cpp, scrolling
// in flexgrid_scrolling_window.cpp, painting in flexgrid_paint_window.cpp, keys and mouse in flexgrid_input_window.cpp.
#include "widgets/flexgrid/flexgrid_window.h"

#include <algorithm>

#include "widgets/flexgrid/hit_test.h"
#include "widgets/flexgrid/paint.h"
#include "win/dpi.h"
#include "win/fonts.h"
#include "win/module_instance.h"

namespace qvx::flexgrid {

// The grid's font metrics from the window's device.
class FlexGridWindow::DeviceMetrics final : public TextMetrics {
  public:
    explicit DeviceMetrics(HWND window) : dpi_(WindowDpi(window)), dc_(CreateCompatibleDC(nullptr)) {}
    Dpi Resolution() const override { return dpi_; }
    int TextWidth(TextView text, const FontSpec& font) const override {
        return AcquireFont(font, dpi_)->RunWidth(dc_.Get(), text);
    }
    int LineHeight(const FontSpec& font) const override { return AcquireFont(font, dpi_)->LineHeight(); }

  private:
    Dpi dpi_;
    UniqueMemoryDc dc_;
};

namespace {

const WindowClass gridClass{L"QvxFlexGrid"};

}  // namespace

FlexGridWindow::FlexGridWindow() : metrics_(std::make_unique<DeviceMetrics>(nullptr)) {
    grid_.SetTextMetrics(metrics_.get());
    grid_.AddListener(this);
    notifiedTop_ = grid_.TopRow();
    notifiedLeft_ = grid_.LeftCol();
}

FlexGridWindow::~FlexGridWindow() {
    Destroy();
    grid_.RemoveListener(this);
    grid_.SetTextMetrics(nullptr);
}

void FlexGridWindow::AddEvents(GridWindowEvents* events) {
    // Listeners are added and removed while others are being notified, so no other listener's position may change.
    if (!events_.empty() && !events_.back()) {
        events_.back() = events;
    } else {
        events_.push_back(events);
    }
}

void FlexGridWindow::RemoveEvents(GridWindowEvents* events) {
    std::replace(events_.begin(), events_.end(), events, static_cast<GridWindowEvents*>(nullptr));
}

std::vector<std::shared_ptr<void>> FlexGridWindow::Hold() const {
    std::vector<std::shared_ptr<void>> held;
    held.reserve(events_.size());
    for (GridWindowEvents* events : events_) {
        if (events) {
            held.push_back(events->Hold());
        }
    }
    return held;
}

bool FlexGridWindow::CreateIn(HWND parent, const Rect& bounds, int id) {
    headlessSize_ = {bounds.Width(), bounds.Height()};
    const DWORD style = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_CLIPCHILDREN | (grid_.Enabled() ? 0 : WS_DISABLED);
    if (!Create(gridClass, L"", style, 0, bounds, parent, id)) {
        return false;
    }
    // A grid mirrors itself. In a window with a mirrored layout, its finished picture would be turned round once more.
    SetWindowLongW(Handle(), GWL_EXSTYLE, GetWindowLongW(Handle(), GWL_EXSTYLE) & ~WS_EX_LAYOUTRTL);
    OnResolutionChange();
    ApplyStyle();
    footer_.Place();
    return true;
}

void FlexGridWindow::MoveTo(const Rect& bounds) {
    headlessSize_ = {bounds.Width(), bounds.Height()};
    if (Handle()) {
        SetWindowPos(Handle(), nullptr, bounds.left, bounds.top, bounds.Width(), bounds.Height(),
                     SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER);
    } else {
        layoutChanged_ = true;
    }
}

void FlexGridWindow::OnGone() {
    buffer_.Release();
    drawnBars_ = {};
    tip_.Destroy();
    accessibility_.Gone();
    drag_ = Drag::None;
    border_ = {};
    stale_.AddAll();
    requested_ = {};
    focused_ = false;
}

Size FlexGridWindow::OuterSize() const {
    RECT outer{};
    if (!Handle() || !GetWindowRect(Handle(), &outer)) {
        return headlessSize_;
    }
    return {static_cast<int>(outer.right - outer.left), static_cast<int>(outer.bottom - outer.top)};
}

Rect FlexGridWindow::BorderPixels() const {
    if (grid_.BorderStyle() == GridBorder::none) {
        return {};
    }
    const bool threeD = grid_.Appearance() == GridAppearance::threeD;
    const int across = GetSystemMetrics(threeD ? SM_CXEDGE : SM_CXBORDER);
    const int down = GetSystemMetrics(threeD ? SM_CYEDGE : SM_CYBORDER);
    return {across, down, across, down};
}

Point FlexGridWindow::ClientCorner() const {
    RECT outer{};
    RECT client{};
    if (!Handle() || !GetWindowRect(Handle(), &outer) || !GetClientRect(Handle(), &client)) {
        const Rect border = BorderPixels();
        return {border.left, border.top};
    }
    MapWindowPoints(Handle(), nullptr, reinterpret_cast<POINT*>(&client), 2);
    return {static_cast<int>(client.left - outer.left), static_cast<int>(client.top - outer.top)};
}

View FlexGridWindow::CurrentView() const {
    View view;
    if (Handle()) {
        const Rect client = ClientArea();
        view.client = {client.Width(), client.Height()};
        view.focused = focused_;
    } else {
        const Rect border = BorderPixels();
        view.client = {std::max(0, headlessSize_.width - border.left - border.right),
                       std::max(0, headlessSize_.height - border.top - border.bottom)};
    }
    view.client.height = std::max(0, view.client.height - footer_.Height());
    view.buttons = buttons_;
    view.buttonWidth = GetSystemMetrics(SM_CXVSCROLL);
    if (buttonPress_ && buttonPress_->inside) {
        view.pressedRow = buttonPress_->row;
        view.pressedCol = buttonPress_->col;
    }
    if (border_.kind == Border::Kind::Column) {
        view.draggedColumn = borderLine_;
    } else if (border_.kind == Border::Kind::Row) {
        view.draggedRow = borderLine_;
    }
    if (movedColumn_) {
        view.movedColumn = movedColumn_->col;
        view.dropLine = movedColumn_->drop.line;
    }
    view.hits = hits_;
    view.marks = marks_;
    return view;
}

View FlexGridWindow::SettledView() {
    SettleLayout();
    return CurrentView();
}

// ---- Changes of the grid -------------------------------------------------------------------------------------------

void FlexGridWindow::Invalidated(GridChange change, const CellRange& range) {
    switch (change) {
        case GridChange::texts:
        case GridChange::formats:
        case GridChange::selection:
            stale_.AddCells(range);
            break;
        case GridChange::layout:
            layoutChanged_ = true;
            stale_.AddAll();
            break;
        case GridChange::scroll:
            break;
        case GridChange::look:
            layoutChanged_ = true;
            stale_.AddAll();
            if (Handle()) {
                ApplyStyle();
            }
            break;
    }
    RequestPaint();
    footer_.Refresh();
    if (notifiedTop_ != grid_.TopRow() || notifiedLeft_ != grid_.LeftCol()) {
        notifiedTop_ = grid_.TopRow();
        notifiedLeft_ = grid_.LeftCol();
        NotifyScroll();
    }
}

// A single paint message covers any number of changes; their extent is worked out when it arrives, unless it is plain
// that all of the window changes. An internal message that a menu takes from the queue is lost, so that a pixel of the
// window is always invalid as well until it is painted. The system ignores requests while a host keeps a parent from
// being drawn (WM_SETREDRAW), so that an old one is repeated.
void FlexGridWindow::RequestPaint() {
    constexpr DWORD oldAge = 100;  // ms
    if (!Handle() || !grid_.Redraw() || (!requested_.Empty() && GetTickCount() - requestedAt_ < oldAge)) {
        return;
    }
    requestedAt_ = GetTickCount();
    requested_ = stale_.AreaToRequest(grid_, ClientArea());
    const RECT invalid = ToRECT(requested_);
    RedrawWindow(Handle(), &invalid, nullptr, RDW_INTERNALPAINT | RDW_INVALIDATE);
}

void FlexGridWindow::ApplyStyle() {
    const HWND window = Handle();
    LONG_PTR style = GetWindowLongPtrW(window, GWL_STYLE);
    LONG_PTR exStyle = GetWindowLongPtrW(window, GWL_EXSTYLE);
    const LONG_PTR oldStyle = style;
    const LONG_PTR oldExStyle = exStyle;
    const bool border = grid_.BorderStyle() != GridBorder::none;
    const bool threeD = border && grid_.Appearance() == GridAppearance::threeD;
    const auto put = [](LONG_PTR& bits, LONG_PTR bit, bool on) { bits = on ? bits | bit : bits & ~bit; };
    put(style, WS_BORDER, border && !threeD);
    put(exStyle, WS_EX_CLIENTEDGE, threeD);
    put(exStyle, WS_EX_LEFTSCROLLBAR, grid_.RightToLeft());
    if (style != oldStyle || exStyle != oldExStyle) {
        SetWindowLongPtrW(window, GWL_STYLE, style);
        SetWindowLongPtrW(window, GWL_EXSTYLE, exStyle);
        SetWindowPos(window, nullptr, 0, 0, 0, 0,
                     SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
    }
    const bool enabled = IsWindowEnabled(window) != 0;
    if (enabled != grid_.Enabled()) {
        EnableWindow(window, grid_.Enabled());
    }
}

void FlexGridWindow::OnResolutionChange() {
    metrics_ = [this] {
        auto fresh = std::make_unique<DeviceMetrics>(Handle());
        grid_.SetTextMetrics(fresh.get());
        return fresh;
    }();
    layoutChanged_ = true;
    MarkAllStale();
}

// Some systems ask for the frame whenever a part of the window appears, and draw both bars then, which takes longer
// than drawing the cells.
bool FlexGridWindow::FrameIsIn(WPARAM region) const {
    RECT box{};
    RECT client{};
    RECT both{};
    constexpr WPARAM wholeFrame = 1;
    if (region <= wholeFrame || GetRgnBox(reinterpret_cast<HRGN>(region), &box) == ERROR) {
        return true;
    }
    GetClientRect(Handle(), &client);
    MapWindowPoints(Handle(), nullptr, reinterpret_cast<POINT*>(&client), 2);
    UnionRect(&both, &box, &client);
    return EqualRect(&both, &client) == 0;
}

LRESULT FlexGridWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    const auto held = Hold();
    switch (message) {
        case WM_PAINT:
            OnPaint();
            return 0;
        case WM_NCPAINT:
            return FrameIsIn(wParam) ? Default(message, wParam, lParam) : 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_PRINTCLIENT: {
            const View view = CurrentView();
            GdiSurface surface(reinterpret_cast<HDC>(wParam), grid_.Metrics().Resolution());
            Paint(grid_, view, surface, {0, 0, view.client.width, view.client.height});
            return 0;
        }
        case WM_SIZE:
            layoutChanged_ = true;
            footer_.Place();
            MarkAllStale();
            return 0;
        case WM_SETREDRAW:
            grid_.SetRedraw(wParam != 0);
            return 0;
        case WM_SETFOCUS:
        case WM_KILLFOCUS:
            focused_ = message == WM_SETFOCUS;
            // Nothing else is drawn differently.
            stale_.AddCells(grid_.Selection());
            RequestPaint();
            if (message == WM_SETFOCUS) {
                accessibility_.FocusCame();
            }
            NotifyFocus(message == WM_SETFOCUS);
            return 0;
        case WM_ENABLE:
            grid_.SetEnabled(wParam != 0);
            return 0;
        case WM_SYSCOLORCHANGE:
        case WM_THEMECHANGED:
            MarkAllStale();
            return 0;
        case WM_SETTINGCHANGE:
        case WM_DPICHANGED_AFTERPARENT:
        case WM_DISPLAYCHANGE:
            OnResolutionChange();
            return 0;
        case WM_KEYDOWN:
        case WM_SYSKEYDOWN:
        case WM_KEYUP:
        case WM_SYSKEYUP:
        case WM_CHAR:
            return OnKey(message, wParam, lParam);
        case WM_GETDLGCODE:
            return DLGC_WANTARROWS | DLGC_WANTCHARS;
        case WM_VSCROLL:
        case WM_HSCROLL:
            OnBar(message == WM_VSCROLL, wParam);
            return 0;
        case WM_MOUSEWHEEL:
        case WM_MOUSEHWHEEL:
            return OnWheel(message == WM_MOUSEWHEEL, wParam) ? 0 : Default(message, wParam, lParam);
        case WM_LBUTTONDOWN:
        case WM_RBUTTONDOWN:
        case WM_MBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
        case WM_RBUTTONDBLCLK:
        case WM_MBUTTONDBLCLK:
        case WM_LBUTTONUP:
        case WM_MBUTTONUP:
            return OnButton(message, wParam, lParam);
        case WM_RBUTTONUP: {
            const LifeWatch watch = Watch();
            const LRESULT result = OnButton(message, wParam, lParam);
            if (watch.Alive() && Handle()) {
                OpenMenu(HitAt(MousePoint(lParam)), MousePoint(lParam));
            }
            return result;
        }
        case WM_CONTEXTMENU:
            // The release of the button has opened the menu already.
            return lParam == -1 && OpenMenuByKey() ? 0 : Default(message, wParam, lParam);
        case WM_MOUSEMOVE:
            // The button may have been released elsewhere, for instance over a message box that a handler has shown.
            if (pressed_ && (wParam & MK_LBUTTON) == 0) {
                EndDrag();
            }
            if (NotifyMouse(message, wParam, MousePoint(lParam))) {
                OnMove(MousePoint(lParam));
            }
            return 0;
        case WM_CAPTURECHANGED:
        case WM_CANCELMODE:
            EndDrag();
            return 0;
        case WM_TIMER:
            OnTimer(wParam);
            return 0;
        case WM_SETCURSOR:
            return LOWORD(lParam) == HTCLIENT && OnSetCursor() ? TRUE : Default(message, wParam, lParam);
        case WM_NOTIFY:
            return OnNotify(wParam, lParam);
        case WM_GETOBJECT: {
            const auto object = accessibility_.Answer(wParam, lParam);
            return object ? *object : Default(message, wParam, lParam);
        }
        case marksMessage:
            if (marks_ && marks_->Waits()) {
                Notify([](GridWindowEvents& events) { events.MarksWait(); });
            }
            return 0;
        case GridAccessibility::notifyMessage:
            accessibility_.NotifyNow();
            return 0;
        default:
            return Default(message, wParam, lParam);
    }
}

}  // namespace qvx::flexgrid
