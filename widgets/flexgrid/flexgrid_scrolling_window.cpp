// The scroll position of the window: bars, wheel, and requests of hosts.
#include <algorithm>

#include "widgets/flexgrid/flexgrid_window.h"
#include "widgets/flexgrid/scrolling.h"

namespace qvx::flexgrid {

// Updates bars and scroll position after changes of counts and sizes; code that depends on the client's size calls this
// first.
void FlexGridWindow::SettleLayout() {
    if (!layoutChanged_ || settling_) {
        return;
    }
    settling_ = true;
    // Bars that come or go resize the client area, and so does what a host does when it is notified of scrolling. More
    // than a few passes would be such a host's fault; the rest is left to the next settling.
    for (int pass = 0; layoutChanged_ && pass < 3; ++pass) {
        layoutChanged_ = false;
        footer_.Place();
        UpdateBars();
        // The scroll position only changes when the grid now ends before it.
        ScrollTo(grid_.TopRow(), grid_.LeftCol());
    }
    settling_ = false;
    UpdateBars();
}

void FlexGridWindow::PrepareBars() {
    if (Handle() && !IsWindowVisible(Handle())) {
        UpdateBars();
    }
}

void FlexGridWindow::UpdateBars() {
    const HWND window = Handle();
    if (!window) {
        return;
    }
    const LONG_PTR style = GetWindowLongPtrW(window, GWL_STYLE);
    const Size thickness{GetSystemMetrics(SM_CXVSCROLL), GetSystemMetrics(SM_CYHSCROLL)};
    const bool hasVertical = (style & WS_VSCROLL) != 0;
    const bool hasHorizontal = (style & WS_HSCROLL) != 0;
    View view = CurrentView();
    const Size room{view.client.width + (hasVertical ? thickness.width : 0),
                    view.client.height + (hasHorizontal ? thickness.height : 0)};
    const BarChoice choice = ChooseBars(RowAxis(grid_, view), ColumnAxis(grid_, view), room, thickness,
                                        static_cast<int>(grid_.ScrollBars()));
    // Bars get their ranges before they appear, so that the frame changes and is drawn only once: a bar takes longer to
    // draw than all cells on some systems.
    const bool framed = choice.vertical != hasVertical || choice.horizontal != hasHorizontal;
    if (framed) {
        SetWindowLongPtrW(window, GWL_STYLE,
                          (style & ~LONG_PTR{WS_VSCROLL | WS_HSCROLL}) | (choice.vertical ? WS_VSCROLL : 0) |
                              (choice.horizontal ? WS_HSCROLL : 0));
    }
    view.client = {std::max(0, room.width - (choice.vertical ? thickness.width : 0)),
                   std::max(0, room.height - (choice.horizontal ? thickness.height : 0))};
    const auto set = [&](int which, const Bar& bar, Bar& known) {
        if (bar == known) {
            return;
        }
        // A bar is drawn only when its thumb moves by a pixel or more, which is seldom among very many rows.
        const int length =
            which == SB_VERT ? view.client.height - 2 * thickness.height : view.client.width - 2 * thickness.width;
        const bool moves = framed || ThumbMoves(known, bar, length);
        if (moves) {
            known = bar;
        }
        // Where even the only row does not fit, the bar cannot scroll. The system would hide it, and the next settling
        // show it again.
        SCROLLINFO info{sizeof info,
                        SIF_RANGE | SIF_PAGE | SIF_POS | SIF_DISABLENOSCROLL,
                        bar.min,
                        bar.max,
                        static_cast<UINT>(bar.page),
                        bar.position,
                        0};
        SetScrollInfo(window, which, &info, moves && !framed);
    };
    if (choice.vertical) {
        set(SB_VERT, BarOf(RowAxis(grid_, view)), drawnBars_[0]);
    } else {
        drawnBars_[0] = {};
    }
    if (choice.horizontal) {
        set(SB_HORZ, BarOf(ColumnAxis(grid_, view)), drawnBars_[1]);
    } else {
        drawnBars_[1] = {};
    }
    if (framed) {
        SetWindowPos(window, nullptr, 0, 0, 0, 0,
                     SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
    }
}

void FlexGridWindow::SetTopRow(int row) {
    SettleLayout();
    const Axis rows = RowAxis(grid_, CurrentView());
    grid_.SetTopRow(rows.CanBeFirst(row) ? ClampFirst(rows, row) : row);
}

void FlexGridWindow::SetLeftCol(int col) {
    SettleLayout();
    const Axis columns = ColumnAxis(grid_, CurrentView());
    grid_.SetLeftCol(columns.CanBeFirst(col) ? ClampFirst(columns, col) : col);
}

void FlexGridWindow::ScrollTo(int topRow, int leftCol) {
    SettleLayout();
    const View view = CurrentView();
    const Axis rows = RowAxis(grid_, view);
    const Axis columns = ColumnAxis(grid_, view);
    const int top = ClampFirst(rows, topRow);
    const int left = ClampFirst(columns, leftCol);
    if (rows.HasScrollable() && top != grid_.TopRow()) {
        grid_.SetTopRow(top);
    }
    if (columns.HasScrollable() && left != grid_.LeftCol()) {
        grid_.SetLeftCol(left);
    }
}

void FlexGridWindow::ScrollIntoView(int row, int col) {
    SettleLayout();
    const View view = CurrentView();
    ScrollTo(FirstToShow(RowAxis(grid_, view), row), FirstToShow(ColumnAxis(grid_, view), col));
}

void FlexGridWindow::OnBar(bool vertical, WPARAM wParam) {
    const int code = LOWORD(wParam);
    if (code > SB_BOTTOM || (code == SB_THUMBTRACK && !grid_.ScrollTrack())) {
        return;
    }
    SettleLayout();
    // The message itself has only 16 bits.
    SCROLLINFO info{sizeof info, SIF_TRACKPOS, 0, 0, 0, 0, 0};
    GetScrollInfo(Handle(), vertical ? SB_VERT : SB_HORZ, &info);
    const auto request = static_cast<BarRequest>(code);
    const View view = CurrentView();
    const int first = FirstAfter(vertical ? RowAxis(grid_, view) : ColumnAxis(grid_, view), request, info.nTrackPos);
    ScrollTo(vertical ? first : grid_.TopRow(), vertical ? grid_.LeftCol() : first);
}

bool FlexGridWindow::OnWheel(bool vertical, WPARAM wParam) {
    SettleLayout();
    const View view = CurrentView();
    const bool down = vertical && (LOWORD(wParam) & MK_SHIFT) == 0;
    const Axis axis = down ? RowAxis(grid_, view) : ColumnAxis(grid_, view);
    if (!axis.HasScrollable() || !Overflows(axis, axis.extent)) {
        return false;
    }
    UINT lines = 3;
    SystemParametersInfoW(down ? SPI_GETWHEELSCROLLLINES : SPI_GETWHEELSCROLLCHARS, 0, &lines, 0);
    const int perNotch = lines == WHEEL_PAGESCROLL ? PageOf(axis) : static_cast<int>(std::min(lines, 100U));
    // Turning the wheel away from the user scrolls to earlier rows; tilting it to the right scrolls to later columns.
    const int delta = static_cast<short>(HIWORD(wParam));
    WheelCounter& counter = down ? wheelDown_ : wheelAcross_;
    const int steps = counter.Take(vertical ? -delta : delta, perNotch);
    if (steps != 0) {
        const int first = ClampFirst(axis, StepShown(axis, axis.first, steps));
        ScrollTo(down ? first : grid_.TopRow(), down ? grid_.LeftCol() : first);
    }
    return true;
}

}  // namespace qvx::flexgrid
