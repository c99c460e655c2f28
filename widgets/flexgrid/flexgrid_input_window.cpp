// The grid window's keys, mouse and tool tip.
#include <algorithm>
#include <utility>

#include "common/keys.h"
#include "widgets/flexgrid/button_steps.h"
#include "widgets/flexgrid/flexgrid_window.h"
#include "widgets/flexgrid/hit_test.h"
#include "widgets/flexgrid/paint.h"

namespace qvx::flexgrid {

namespace {

constexpr UINT_PTR scrollTimer = 1;
constexpr UINT scrollInterval = 50;  // milliseconds between steps of automatic scrolling

short ButtonOf(UINT message) {
    switch (message) {
        case WM_LBUTTONDOWN:
        case WM_LBUTTONUP:
        case WM_LBUTTONDBLCLK:
            return leftButton;
        case WM_RBUTTONDOWN:
        case WM_RBUTTONUP:
        case WM_RBUTTONDBLCLK:
            return rightButton;
        default:
            return middleButton;
    }
}

bool IsButtonUp(UINT message) { return message == WM_LBUTTONUP || message == WM_RBUTTONUP || message == WM_MBUTTONUP; }

ButtonAction ActionOf(UINT message) {
    const bool twice = message == WM_LBUTTONDBLCLK || message == WM_RBUTTONDBLCLK || message == WM_MBUTTONDBLCLK;
    return twice ? ButtonAction::downTwice : IsButtonUp(message) ? ButtonAction::up : ButtonAction::down;
}

// Returns the buttons that are held during a move.
short ButtonsOf(WPARAM wParam) {
    return static_cast<short>(((wParam & MK_LBUTTON) != 0 ? leftButton : 0) |
                              ((wParam & MK_RBUTTON) != 0 ? rightButton : 0) |
                              ((wParam & MK_MBUTTON) != 0 ? middleButton : 0));
}

float ToTwips(int pixels, int dotsPerInch) {
    return static_cast<float>(pixels) * static_cast<float>(twipsPerInch) / static_cast<float>(dotsPerInch);
}

}  // namespace

// Calls every listener; returns false when one of them destroyed this window object. Listeners may be added and removed
// meanwhile.
template <class Call>
bool FlexGridWindow::Notify(Call call) {
    const LifeWatch watch = Watch();
    for (std::size_t i = 0; i < events_.size(); ++i) {
        if (GridWindowEvents* events = events_[i]) {
            call(*events);
            if (!watch.Alive()) {
                return false;
            }
        }
    }
    return true;
}

void FlexGridWindow::NotifyScroll() {
    Notify([](GridWindowEvents& events) { events.Scroll(); });
}

bool FlexGridWindow::NotifyFocus(bool got) {
    return Notify([&](GridWindowEvents& events) { got ? events.GotFocus() : events.LostFocus(); });
}

// ---- Keys ----------------------------------------------------------------------------------------------------------

LRESULT FlexGridWindow::OnKey(UINT message, WPARAM wParam, LPARAM lParam) {
    short key = static_cast<short>(wParam);
    auto shift = static_cast<short>(ShiftState());
    switch (message) {
        case WM_KEYDOWN:
        case WM_SYSKEYDOWN:
            if (key == keys::escape && (drag_ != Drag::None || border_.kind != Border::Kind::None || buttonPress_)) {
                EndDrag();
                return 0;
            }
            if (!Notify([&](GridWindowEvents& events) { events.KeyDown(key, shift); })) {
                return 0;
            }
            if (key != 0 && ActOnKey(key, shift)) {
                return 0;
            }
            break;
        case WM_KEYUP:
        case WM_SYSKEYUP:
            if (!Notify([&](GridWindowEvents& events) { events.KeyUp(key, shift); })) {
                return 0;
            }
            break;
        default:
            Notify([&](GridWindowEvents& events) { events.KeyPress(key); });
            return 0;
    }
    // Menu keys go on to the system, whatever the listeners changed.
    return message == WM_SYSKEYDOWN || message == WM_SYSKEYUP ? Default(message, wParam, lParam) : 0;
}

bool FlexGridWindow::ActOnKey(int key, int shift) {
    SettleLayout();
    const View view = CurrentView();
    const Cursor cursor = grid_.CurrentCursor();
    const auto step = KeyStep(key, shift, cursor, RowAxis(grid_, view), ColumnAxis(grid_, view));
    if (!step) {
        return false;
    }
    const LifeWatch watch = Watch();
    if (step->cursor != cursor) {
        grid_.Select(step->cursor);
    }
    // A handler may have changed the grid, so the step is determined again.
    if (watch.Alive()) {
        ScrollTo(step->topRow, step->leftCol);
    }
    if (watch.Alive()) {
        ScrollIntoView(grid_.RowSel(), grid_.ColSel());
    }
    return true;
}

// ---- Mouse ---------------------------------------------------------------------------------------------------------

bool FlexGridWindow::NotifyMouse(UINT message, WPARAM wParam, Point point) {
    const Dpi dpi = grid_.Metrics().Resolution();
    const float x = ToTwips(point.x, dpi.x);
    const float y = ToTwips(point.y, dpi.y);
    const auto shift = static_cast<short>(ShiftState());
    return Notify([&](GridWindowEvents& events) {
        if (message == WM_MOUSEMOVE) {
            events.MouseMove(ButtonsOf(wParam), shift, x, y);
        } else if (IsButtonUp(message)) {
            events.MouseUp(ButtonOf(message), shift, x, y);
        } else {
            events.MouseDown(ButtonOf(message), shift, x, y);
        }
    });
}

LRESULT FlexGridWindow::OnButton(UINT message, WPARAM wParam, LPARAM lParam) {
    const LifeWatch watch = Watch();
    const Point point = MousePoint(lParam);
    lastPoint_ = point;
    tip_.Press(message, point);
    bool click = false;
    std::optional<HeaderPress> header;
    std::optional<ButtonPress> button;
    for (const ButtonStep step : StepsOf(ButtonOf(message), ActionOf(message))) {
        switch (step) {
            case ButtonStep::takeFocus:
                if (GetFocus() != Handle()) {
                    SetFocus(Handle());
                }
                break;
            case ButtonStep::notifyDown:
            case ButtonStep::notifyUp:
                NotifyMouse(message, wParam, point);
                break;
            case ButtonStep::press:
                OnLeftDown(point, ShiftState());
                break;
            case ButtonStep::notifyDblClick:
                clicking_ = false;
                if (Notify([](GridWindowEvents& events) { events.DblClick(); }) && GetFocus() != Handle()) {
                    drag_ = Drag::None;  // an editor has opened and must stay over its cell
                    headerPress_.reset();
                }
                if (watch.Alive() && Handle() && border_.kind == Border::Kind::Column) {
                    FitFrom(border_.index);
                }
                break;
            case ButtonStep::release:
                header = std::exchange(headerPress_, std::nullopt);
                button = std::exchange(buttonPress_, std::nullopt);
                if (button) {
                    MarkAllStale();
                }
                click = OnLeftUp(point);
                break;
            case ButtonStep::notifyClick:
                if (click) {
                    Notify([](GridWindowEvents& events) { events.Click(); });
                }
                // The second press of a double click makes no click, but reverses the order like any other.
                if (header && watch.Alive() && Handle()) {
                    const bool shift = (header->shift & keys::shiftMask) != 0;
                    Notify([&](GridWindowEvents& events) { events.HeaderClick(header->col, shift); });
                }
                if (button && button->inside && watch.Alive() && Handle()) {
                    Notify([&](GridWindowEvents& events) { events.ButtonClick(button->row, button->col); });
                }
                break;
        }
        if (!watch.Alive() || !Handle()) {
            return 0;
        }
    }
    return 0;
}

bool FlexGridWindow::OpenMenu(const Hit& cell, Point point) {
    POINT at{point.x, point.y};
    ClientToScreen(Handle(), &at);
    bool opened = false;
    Notify([&](GridWindowEvents& events) { opened = opened || events.ContextMenu(cell, at.x, at.y); });
    return opened;
}

// The menu opens below the current cell, or at the window's edge where that cannot be seen.
bool FlexGridWindow::OpenMenuByKey() {
    const View view = SettledView();
    Hit cell;
    Point at{};
    if (grid_.Row() < grid_.Rows() && grid_.Col() < grid_.Cols()) {
        cell = {grid_.Row(), grid_.Col(), grid_.Row() < grid_.FixedRows(), grid_.Col() < grid_.FixedCols()};
        const Rect area = CellArea(grid_, view, cell.row, cell.col);
        at = {grid_.RightToLeft() ? area.right : area.left, area.bottom};
    }
    return OpenMenu(cell, {std::clamp(at.x, 0, view.client.width), std::clamp(at.y, 0, view.client.height)});
}

void FlexGridWindow::OnLeftDown(Point point, int shift) {
    SettleLayout();
    const View view = CurrentView();
    const Axis rows = RowAxis(grid_, view);
    const Axis columns = ColumnAxis(grid_, view);
    pressed_ = true;
    clicking_ = true;
    const Border border =
        BorderAt(rows, columns, point, static_cast<int>(grid_.AllowUserResizing()), grid_.Metrics().Resolution());
    if (border.kind != Border::Kind::None) {
        border_ = border;
        clicking_ = false;
        SetCapture(Handle());
        OnMove(point);
        return;
    }
    if (PressButton(point)) {
        return;
    }
    const Hit hit = HitTest(rows, columns, point);
    bool handled = false;
    if (hit.OnCell() && hit.fixedRow && !hit.fixedCol) {
        for (GridWindowEvents* events : events_) {
            handled = handled || events->HandlesHeaderClick(hit.col);
        }
    }
    if (handled) {
        headerPress_ = {hit.col, point, shift};
        SetCapture(Handle());
    } else {
        PressCell(point, shift);
    }
}

void FlexGridWindow::PressCell(Point point, int shift) {
    const View view = CurrentView();
    const Axis rows = RowAxis(grid_, view);
    const Axis columns = ColumnAxis(grid_, view);
    const Cursor cursor = grid_.CurrentCursor();
    Press press = MousePress(HitTest(rows, columns, point), (shift & keys::shiftMask) != 0, grid_.AllowBigSelection(),
                             grid_.SelectionMode(), cursor, rows, columns);
    press.cursor = grid_.OnUnfilteredRows(press.cursor);
    const LifeWatch watch = Watch();
    if (press.cursor != cursor) {
        grid_.Select(press.cursor);
    }
    // A handler of the cursor's events may have placed an editor over the new cell, and the editor then has the focus:
    // the press has ended.
    if (watch.Alive() && Handle() && pressed_ && GetFocus() == Handle()) {
        // A window that has the capture already is notified as if it lost it, which would end the drag.
        if (GetCapture() != Handle()) {
            SetCapture(Handle());
        }
        drag_ = press.drag;
    }
}

void FlexGridWindow::OnMove(Point point) {
    lastPoint_ = point;
    if (border_.kind != Border::Kind::None) {
        const View view = CurrentView();
        const bool column = border_.kind == Border::Kind::Column;
        const Axis axis = column ? ColumnAxis(grid_, view) : RowAxis(grid_, view);
        const Dpi dpi = grid_.Metrics().Resolution();
        borderLine_ =
            DraggedBorder(border_, axis.Along(column ? point.x : point.y), axis.extent, column ? dpi.x : dpi.y);
        MarkAllStale();
        return;
    }
    if (buttonPress_) {
        const bool inside = ButtonArea(grid_, CurrentView(), buttonPress_->row, buttonPress_->col).Contains(point);
        if (std::exchange(buttonPress_->inside, inside) != inside) {
            MarkAllStale();
        }
        return;
    }
    if (headerPress_ && IsDragFrom(point)) {
        const HeaderPress press = *std::exchange(headerPress_, std::nullopt);
        const LifeWatch watch = Watch();
        PressCell(press.point, press.shift);
        if (!watch.Alive() || !Handle()) {
            return;
        }
    }
    if (drag_ != Drag::None) {
        DragSelection(point);
        return;
    }
    tip_.Follow(Handle(), HitAt(point), point, grid_.RightToLeft());
}

void FlexGridWindow::DragSelection(Point point) {
    const View view = CurrentView();
    const Axis rows = RowAxis(grid_, view);
    const Axis columns = ColumnAxis(grid_, view);
    const bool outside = point.x < 0 || point.y < 0 || point.x >= view.client.width || point.y >= view.client.height;
    const Cursor cursor = grid_.CurrentCursor();
    const Cursor moved = MouseDrag(drag_, cursor, point, rows, columns);
    const LifeWatch watch = Watch();
    if (moved != cursor) {
        grid_.Select(moved);
    }
    if (!watch.Alive() || !Handle() || drag_ == Drag::None) {
        return;
    }
    if (outside) {
        SetTimer(Handle(), scrollTimer, scrollInterval, nullptr);
    } else {
        KillTimer(Handle(), scrollTimer);
    }
}

void FlexGridWindow::OnTimer() {
    if (drag_ == Drag::None) {
        KillTimer(Handle(), scrollTimer);
        return;
    }
    SettleLayout();
    const View view = CurrentView();
    const Axis rows = RowAxis(grid_, view);
    const Axis columns = ColumnAxis(grid_, view);
    const Dpi dpi = grid_.Metrics().Resolution();
    int top = grid_.TopRow();
    int left = grid_.LeftCol();
    if (drag_ != Drag::Columns) {
        top = ClampFirst(rows, StepShown(rows, top, AutoScrollSteps(rows.Along(lastPoint_.y), 0, rows.extent, dpi.y)));
    }
    if (drag_ != Drag::Rows) {
        left = ClampFirst(
            columns, StepShown(columns, left, AutoScrollSteps(columns.Along(lastPoint_.x), 0, columns.extent, dpi.x)));
    }
    const LifeWatch watch = Watch();
    ScrollTo(top, left);
    if (watch.Alive() && Handle()) {
        DragSelection(lastPoint_);
    }
}

// Whether the pointer has moved so far from the pressed header that the press is a drag.
bool FlexGridWindow::IsDragFrom(Point point) const {
    const Point from = headerPress_->point;
    return std::abs(point.x - from.x) > GetSystemMetrics(SM_CXDRAG) ||
           std::abs(point.y - from.y) > GetSystemMetrics(SM_CYDRAG);
}

// Returns true when the release makes a click.
bool FlexGridWindow::OnLeftUp(Point point) {
    const Rect client = ClientArea();
    const bool click = pressed_ && clicking_ && client.Contains(point);
    const Border border = border_;
    const LifeWatch watch = Watch();
    if (border.kind != Border::Kind::None) {
        OnMove(point);
        const int line = borderLine_;
        EndDrag();
        const bool column = border.kind == Border::Kind::Column;
        const Dpi dpi = grid_.Metrics().Resolution();
        const int twips = DraggedSizeTwips(border, line, column ? dpi.x : dpi.y);
        if (column && border.index < grid_.Cols()) {
            grid_.SetColWidth(border.index, twips);
        } else if (!column && border.index < grid_.Rows()) {
            grid_.SetRowHeight(border.index, twips);
        }
        if (watch.Alive()) {
            Notify([](GridWindowEvents& events) { events.Resized(); });
        }
        return false;
    }
    EndDrag();
    return click;
}

void FlexGridWindow::EndDrag() {
    const bool resizing = border_.kind != Border::Kind::None;
    const bool pressing = buttonPress_.has_value();
    drag_ = Drag::None;
    headerPress_.reset();
    buttonPress_.reset();
    border_ = {};
    borderLine_ = -1;
    pressed_ = false;
    if (!Handle()) {
        return;
    }
    KillTimer(Handle(), scrollTimer);
    if (resizing || pressing) {
        MarkAllStale();
    }
    if (GetCapture() == Handle()) {
        ReleaseCapture();
    }
}

bool FlexGridWindow::OnSetCursor() {
    POINT at{};
    if (!GetCursorPos(&at) || !ScreenToClient(Handle(), &at)) {
        return false;
    }
    Border border = border_;
    if (border.kind == Border::Kind::None) {
        const View view = CurrentView();
        border =
            BorderAt(RowAxis(grid_, view), ColumnAxis(grid_, view), {static_cast<int>(at.x), static_cast<int>(at.y)},
                     static_cast<int>(grid_.AllowUserResizing()), grid_.Metrics().Resolution());
    }
    if (border.kind == Border::Kind::None) {
        return false;
    }
    SetCursor(LoadCursorW(nullptr, border.kind == Border::Kind::Column ? IDC_SIZEWE : IDC_SIZENS));
    return true;
}

// ---- Tool tip ------------------------------------------------------------------------------------------------------

Hit FlexGridWindow::HitAt(Point point) const {
    const View view = CurrentView();
    return HitTest(RowAxis(grid_, view), ColumnAxis(grid_, view), point);
}

LRESULT FlexGridWindow::OnNotify(WPARAM wParam, LPARAM lParam) {
    NMTTDISPINFOW* question = tip_.QuestionOf(lParam);
    if (!question) {
        return Default(WM_NOTIFY, wParam, lParam);
    }
    // The grid may have changed and scrolled since the pointer came to rest.
    SettleLayout();
    const Hit hit = HitAt(lastPoint_);
    Text text;
    const auto ask = [&](GridWindowEvents& events) {
        if (text.empty() && hit.OnCell()) {
            text = events.ToolTip(hit.row, hit.col);
        }
    };
    if (Notify(ask)) {
        tip_.Answer(*question, std::move(text));
    }
    return 0;
}

}  // namespace qvx::flexgrid
