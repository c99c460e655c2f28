// The window of a flexible grid: it owns the grid, shows it, and turns keys and mouse into what the view rules say.
#pragma once

#include <windows.h>

#include <array>
#include <memory>
#include <optional>
#include <vector>

#include "widgets/flexgrid/flexgrid_accessible_object.h"
#include "widgets/flexgrid/flexgrid_tip_window.h"
#include "widgets/flexgrid/grid.h"
#include "widgets/flexgrid/navigation.h"
#include "widgets/flexgrid/resizing.h"
#include "widgets/flexgrid/scrolling.h"
#include "widgets/flexgrid/view.h"
#include "widgets/flexgrid/window_events.h"
#include "win/gdi_surface.h"
#include "win/window.h"

namespace qvx::flexgrid {

// Works without a window too: then it lays out as one of the size last given would.
class FlexGridWindow final : public Window, private GridListener {
  public:
    FlexGridWindow();
    ~FlexGridWindow() override;

    Grid& Model() { return grid_; }
    const Grid& Model() const { return grid_; }

    // Not owned; told in the order they came. A listener removes itself before it goes.
    void AddEvents(GridWindowEvents* events);
    void RemoveEvents(GridWindowEvents* events);
    // Keeps the owners of all listeners, and so perhaps this window, alive until the result goes. Whoever changes or
    // scrolls the grid without an owner of its own on the way takes it first: handlers of its events may let go of the
    // last reference.
    std::vector<std::shared_ptr<void>> Hold() const;

    // A visible child window. `bounds` in the parent's client pixels. False when the system refuses.
    bool CreateIn(HWND parent, const Rect& bounds, int id = 0);
    // In the parent's client pixels; without a window only the size counts.
    void MoveTo(const Rect& bounds);

    // Twips from the outer corner of the window, border included, as hosts place things over cells. The cursor's cell
    // is scrolled into view first. Grid lines are left out.
    Rect CellTwips();
    // Twips between the outer corner of the window and the start of a row or column, which may be scrolled away.
    int RowPos(int row);
    int ColPos(int col);
    bool RowIsVisible(int row);
    bool ColIsVisible(int col);
    // Where the mouse was last pressed or moved to. Scrolls nothing, unlike CellTwips.
    Hit PressedCell() const { return HitAt(lastPoint_); }
    // The cell under the pointer; beyond the cells the nearest one. 0 without cells.
    int MouseRow();
    int MouseCol();
    // As the grid's own, errors too, but held where the last page is full: what is told of is where the view stays.
    void SetTopRow(int row);
    void SetLeftCol(int col);
    // Both, held likewise; any numbers.
    void ScrollTo(int topRow, int leftCol);
    void ScrollIntoView(int row, int col);
    // Whether the cell's text is cut off at the cell's edge.
    bool IsTextCut(int row, int col);

    // What assistive programs see of the window.
    GridAccessibility& Accessibility() { return accessibility_; }
    // What the rules of the view need to know, with scroll bars and scroll position brought up to date.
    View SettledView();

    // Draws everything now that wants drawing.
    void Refresh();
    // Draws the grid as it stands into any device context of the same resolution: border, cells and ground without
    // bars, in a rectangle of pixels.
    void DrawTo(HDC dc, const Rect& area);
    // The outer size in pixels.
    Size OuterSize() const;

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void OnGone() override;

  private:
    class DeviceMetrics;

    // GridListener
    void Invalidated(GridChange change, const CellRange& range) override;

    template <class Call>
    bool Notify(Call call);
    void NotifyScroll();
    bool NotifyFocus(bool got);
    View CurrentView() const;
    Rect BorderPixels() const;
    // From the window's outer corner to its client area, in pixels: a right-to-left grid has its bar on that side.
    Point ClientCorner() const;

    // What has changed since the last painting.
    void RequestPaint();
    void Settle();
    void SettleLayout();
    void ApplyStyle();
    void UpdateBars();
    void MarkStale(const Rect& area);
    void MarkAllStale();
    void FollowViewScroll();
    void OnPaint();
    void PaintStale();

    LRESULT OnKey(UINT message, WPARAM wParam, LPARAM lParam);
    bool ActOnKey(int key, int shift);
    void OnBar(bool vertical, WPARAM wParam);
    bool OnWheel(bool vertical, WPARAM wParam);
    LRESULT OnButton(UINT message, WPARAM wParam, LPARAM lParam);
    void OnLeftDown(Point point, int shift);
    bool OnLeftUp(Point point);
    void OnMove(Point point);
    void DragSelection(Point point);
    void OnTimer();
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

    // Painting. The back buffer always holds the window's contents but for `stale_`.
    BackBuffer buffer_;
    Rect stale_{};
    CellRange changedCells_{};  // bounds of changed cells, not yet in stale_
    bool layoutChanged_ = true;
    bool allStale_ = true;
    bool paintRequested_ = false;
    bool settling_ = false;
    int paintedTop_ = 0;
    int paintedLeft_ = 0;
    std::array<Bar, 2> drawnBars_{};  // the vertical and the horizontal one as they are on the screen
    int notifiedTop_ = -1;            // the scroll position that listeners know of
    int notifiedLeft_ = -1;

    // Mouse
    Drag drag_ = Drag::None;
    Border border_;  // being dragged, or none
    int borderLine_ = -1;
    bool pressed_ = false;   // the left button went down here
    bool clicking_ = false;  // and its release is a click
    Point lastPoint_{};
    WheelCounter wheelDown_;
    WheelCounter wheelAcross_;
    CellTip tip_;

    GridAccessibility accessibility_{*this};  // listens to the grid
};

}  // namespace qvx::flexgrid
