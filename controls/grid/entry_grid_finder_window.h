// Searching in a grid for data entry by its user: the bar, the search that it shows, and the cells that stand out.
#pragma once

#include "controls/grid/cell_search.h"
#include "controls/grid/entry_grid_window.h"
#include "controls/grid/find_bar_window.h"

namespace qvx::grid {

class EntryGrid::Finder final : private FindBarListener, private flexgrid::CellHits {
  public:
    explicit Finder(EntryGrid& owner) : owner_(owner), search_(owner.Model()), bar_(*this) {}
    ~Finder() { owner_.window_->ShowHits(nullptr); }

    // Executes a key on the grid or in its editor. Errors are passed on.
    void Act(FindAction action);
    bool HasFocus() const { return bar_.HasFocus(); }
    // Hides the bar, and returns the focus to the grid if the bar had it.
    void Close();
    // The window that the bar is in is going.
    void Detach();
    // Places the bar in the control and returns its height; 0 while it is hidden.
    int Place(Size control);

    void Invalidated(flexgrid::GridChange change, const flexgrid::CellRange& range);
    void CursorMoved();

  private:
    // CellHits
    bool IsHit(int row, int col) const override { return search_.IsHit(row, col); }
    // FindBarListener
    void BarChanged() override;
    void BarAction(FindAction action) override;
    void BarTimer() override;
    void BarWheel(UINT message, WPARAM wParam, LPARAM lParam) override { owner_.TurnWheel(message, wParam, lParam); }
    void BarFocus() override { owner_.NotifyFocus(); }

    CellPlace Cursor() const { return {owner_.Model().Row(), owner_.Model().Col()}; }
    void Open(bool replaces);
    void Look();
    void Step(bool forward);
    void Replace(bool all);
    // Goes on counting for a short time, moves to the first hit when it is due, and shows the result.
    void GoOn();
    void FollowText();

    EntryGrid& owner_;
    CellSearch search_;
    FindBarWindow bar_;
    CellPlace anchor_;          // where the first hit of a typed text is searched from
    bool moves_ = false;        // to that hit, as soon as it is known
    bool moving_ = false;       // the finder itself moves the cursor
    bool stale_ = true;         // the rows have to be counted anew
    bool keepsStatus_ = false;  // what was replaced is shown until something changes
};

}  // namespace qvx::grid
