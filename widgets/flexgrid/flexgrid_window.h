// The window of a flexible grid: it owns the grid, displays it, and applies the view rules to keys and the mouse.
#pragma once

#include <windows.h>

#include <array>
#include <memory>
#include <optional>
#include <vector>

#include "widgets/flexgrid/column_drag.h"
#include "widgets/flexgrid/flexgrid_accessible_object.h"
#include "widgets/flexgrid/flexgrid_tip_window.h"
#include "widgets/flexgrid/footer_window.h"
#include "widgets/flexgrid/grid.h"
#include "widgets/flexgrid/navigation.h"
#include "widgets/flexgrid/resizing.h"
#include "widgets/flexgrid/scrolling.h"
#include "widgets/flexgrid/stale_area.h"
#include "widgets/flexgrid/view.h"
#include "widgets/flexgrid/window_events.h"
#include "win/gdi_surface.h"
#include "win/window.h"

namespace qvx::flexgrid {

// Works without a window too; the layout is then that of a window of the last size.
class FlexGridWindow final : public Window, private GridListener {
  public:
    FlexGridWindow();
    ~FlexGridWindow() override;

    Grid& Model() { return grid_; }
    const Grid& Model() const { return grid_; }

    // Not owned; notified in the order in which they were added. A listener removes itself before it is destroyed.
    void AddEvents(GridWindowEvents* events);
    void RemoveEvents(GridWindowEvents* events);
    // Keeps the owners of all listeners, and so perhaps this window, alive until the result is destroyed. Code that
    // changes or scrolls the grid without holding an owner itself calls this first: handlers of the grid's events may
    // release the last reference.
    std::vector<std::shared_ptr<void>> Hold() const;

    // Creates a visible child window. `bounds` is in the parent's client pixels. Returns false when the system refuses.
    bool CreateIn(HWND parent, const Rect& bounds, int id = 0);
    // Moves the window, in the parent's client pixels; without a window only the size counts.
    void MoveTo(const Rect& bounds);
    // Shows the bars that the grid needs if the window cannot be seen yet: later, each change of one draws both.
    void PrepareBars();

    // Returns the cursor's cell in twips from the outer corner of the window, border included, as hosts place controls
    // over cells; grid lines are excluded. The cell is scrolled into view first.
    Rect CellTwips();
    // Returns the twips between the outer corner of the window and the start of a row or column, which may be scrolled
    // out of view.
    int RowPos(int row);
    int ColPos(int col);
    // Returns the visible parts of the columns, in pixels from the outer left edge of the window.
    std::vector<Span> ColumnSpans();
    // Whether any part of the row or column is visible.
    bool RowIsVisible(int row);
    bool ColIsVisible(int col);
    // Returns the position where the mouse was last pressed or moved to. Unlike CellTwips, it scrolls nothing.
    Hit PressedCell() const { return HitAt(lastPoint_); }
    // The cell under the pointer; outside the cells, the nearest one. 0 without cells.
    int MouseRow();
    int MouseCol();
    // Sets the grid's own value and throws its errors, but limits the value so that the last page stays full; listeners
    // are notified of the resulting position.
    void SetTopRow(int row);
    void SetLeftCol(int col);
    // Sets both, limited in the same way; any numbers are accepted.
    void ScrollTo(int topRow, int leftCol);
    // Scrolls as little as needed to make the cell completely visible.
    void ScrollIntoView(int row, int col);
    // Whether the cell's text is cut off at the cell's edge.
    bool IsTextCut(int row, int col);

    // Makes the hits of a search stand out; null ends that. To be called again when the hits have changed. Not owned.
    void ShowHits(const CellHits* hits);
    // Does the same for cells with a mark.
    void ShowMarks(const CellMarks* marks);
    // Shows these buttons in cells, or none; not owned. To be called again when they change.
    void SetButtons(const CellButtons* buttons);
    // Shows a line with these texts below the rows, or none; not owned. RefreshFooter is to be called when they change
    // for a reason other than a change of the grid.
    void ShowFooter(const CellFooter* footer);
    void RefreshFooter() { footer_.Refresh(); }
    // Returns how wide the column must be for everything shown in it, in twips (column_fit.h).
    int FittedWidth(int col, int rows);

    // Whether the pointer drags something, which Escape ends.
    bool Dragging() const {
        return drag_ != Drag::None || border_.kind != Border::Kind::None || buttonPress_ || movedColumn_;
    }

    // The window's support for assistive programs.
    GridAccessibility& Accessibility() { return accessibility_; }
    // Returns the state that the view rules need, with scroll bars and scroll position brought up to date.
    View SettledView();

    // Draws all invalid parts at once.
    void Refresh();
    // Draws the grid as it is into any device context of the same resolution: border, cells and background without
    // scroll bars, in a rectangle of pixels.
    void DrawTo(HDC dc, const Rect& area);
    // The outer size in pixels.
    Size OuterSize() const;

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void OnGone() override;

  private:
    // The message that the window sends to itself when marks wait.
    static constexpr UINT marksMessage = GridAccessibility::notifyMessage + 1;

    class DeviceMetrics;

    // GridListener
    void Invalidated(GridChange change, const CellRange& range) override;

    // Calls every listener; returns false when one of them destroyed this window object. Listeners may be added and
    // removed meanwhile.
    template <class Call>
    bool Notify(Call call);
    void NotifyScroll();
    bool NotifyFocus(bool got);
    View CurrentView() const;
    Rect BorderPixels() const;
    // The offset in pixels from the window's outer corner to its client area, which includes the scroll bar in a
    // right-to-left grid.
    Point ClientCorner() const;

    // Requests painting of everything that has changed since the last painting.
    void RequestPaint();
    Rect Settle();
    void SettleLayout();
    void ApplyStyle();
    // Whether the region of WM_NCPAINT covers more than the client area.
    bool FrameIsIn(WPARAM region) const;
    void UpdateBars();
    void MarkAllStale();
    void OnPaint();
    void PaintStale(const Rect& invalidated);

    LRESULT OnKey(UINT message, WPARAM wParam, LPARAM lParam);
    bool ActOnKey(int key, int shift);
    void OnBar(bool vertical, WPARAM wParam);
    bool OnWheel(bool vertical, WPARAM wParam);
    LRESULT OnButton(UINT message, WPARAM wParam, LPARAM lParam);
    // Returns whether a listener has shown a menu. The point is in the client area.
    bool OpenMenu(const Hit& cell, Point point);
    bool OpenMenuByKey();
    void OnLeftDown(Point point, int shift);
    void PressCell(Point point, int shift);
    bool IsDragFrom(Point point) const;
    bool PressHeader(const Hit& hit, Point point, int shift);
    bool MovesColumns();
    void DragColumn(Point point);
    void ScrollWhileDragging();
    bool OnLeftUp(Point point);
    void OnMove(Point point);
    void DragSelection(Point point);
    bool PressButton(Point point);
    void FitFrom(int col);
    void OnTimer(UINT_PTR timer);
    void EndDrag();
    bool OnSetCursor();
    void OnResolutionChange();
    bool NotifyMouse(UINT message, WPARAM wParam, Point point);
    LRESULT OnNotify(WPARAM wParam, LPARAM lParam);
    Hit HitAt(Point point) const;

    std::unique_ptr<DeviceMetrics> metrics_;
    Grid grid_;
    std::vector<GridWindowEvents*> events_;
    Size headlessSize_{};  // outer size while there is no window

    // Painting. The back buffer always contains the window's contents, except for `stale_`.
    BackBuffer buffer_;
    StaleArea stale_;
    bool layoutChanged_ = true;
    Rect requested_;         // invalidated for the next paint message; empty when none has been requested
    DWORD requestedAt_ = 0;  // in ticks of the system
    bool focused_ = false;   // asking the system costs a call to another process on some
    const CellHits* hits_ = nullptr;
    const CellMarks* marks_ = nullptr;
    bool settling_ = false;
    std::array<Bar, 2> drawnBars_{};  // the vertical and the horizontal one as they are on the screen
    int notifiedTop_ = -1;            // the scroll position that listeners were last notified of
    int notifiedLeft_ = -1;

    // Mouse
    Drag drag_ = Drag::None;
    Border border_;  // being dragged, or none
    int borderLine_ = -1;
    bool pressed_ = false;   // the left button went down here
    bool clicking_ = false;  // whether its release is a click
    struct HeaderPress {
        int col;
        Point point;
        int shift;
        bool clicks;  // a listener handles the click
    };
    std::optional<HeaderPress> headerPress_;  // a press on a header that may become a click or a drag
    struct MovedColumn {
        int col;
        ColumnDrop drop;
    };
    std::optional<MovedColumn> movedColumn_;  // being dragged by its header
    struct ButtonPress {
        int row;
        int col;
        bool inside;  // the pointer is on the button
    };
    std::optional<ButtonPress> buttonPress_;
    const CellButtons* buttons_ = nullptr;
    Point lastPoint_{};
    WheelCounter wheelDown_;
    WheelCounter wheelAcross_;
    CellTip tip_;

    FooterWindow footer_{*this};
    GridAccessibility accessibility_{*this};  // listens to the grid
};

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

}  // namespace qvx::flexgrid
