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
            if (key == keys::escape && Dragging()) {
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
    std::optional<MovedColumn> moved;
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
                moved = std::exchange(movedColumn_, std::nullopt);
                if (button || moved) {
                    MarkAllStale();
                }
                if (header && !header->clicks) {
                    PressCell(header->point, header->shift);
                }
                if (watch.Alive()) {
                    click = OnLeftUp(point);
                }
                break;
            case ButtonStep::notifyClick:
                if (click) {
                    Notify([](GridWindowEvents& events) { events.Click(); });
                }
                // The second press of a double click makes no click, but reverses the order like any other.
                if (header && header->clicks && watch.Alive() && Handle()) {
                    const bool shift = (header->shift & keys::shiftMask) != 0;
                    Notify([&](GridWindowEvents& events) { events.HeaderClick(header->col, shift); });
                }
                if (moved && moved->drop.position >= 0 && watch.Alive() && Handle()) {
                    Notify([&](GridWindowEvents& events) { events.ColumnDropped(moved->col, moved->drop.position); });
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
    if (!PressHeader(HitTest(rows, columns, point), point, shift)) {
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
