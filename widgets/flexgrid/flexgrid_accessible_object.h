// The grid's objects for assistive programs, and the events that these receive: the rules of accessible_view.h and
// accessible_events.h behind the system's interface.
#pragma once

#include <windows.h>

#include <memory>
#include <optional>

#include "common/text.h"
#include "widgets/flexgrid/accessible_events.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::flexgrid {

class FlexGridWindow;

// Information that only the control around the grid has.
class AccessibleHost {
  public:
    virtual ~AccessibleHost() = default;
    // The name of the grid; empty for none.
    virtual Text AccessibleName() = 0;
    // Whether the user may change the cell.
    virtual bool IsEditable(int row, int col) = 0;
    // The text of an editor that is open over the cell.
    virtual std::optional<Text> EditedText(int row, int col) = 0;
    // What there is to know of a cell besides its text; empty for nothing.
    virtual Text DescriptionOf(int row, int col) = 0;
    // Opens the editor over the current cell, or enters a text there as if it were typed. Returns false when that is
    // refused.
    virtual bool BeginEdit() = 0;
    virtual bool EnterText(TextView text) = 0;
};

// Clients keep objects for as long as they like: the link outlives the window, and is empty then.
struct AccessibleLink {
    FlexGridWindow* window = nullptr;
    AccessibleHost* host = nullptr;
};

// The window's side of the link.
class GridAccessibility final : private GridListener {
  public:
    // The message that the window sends to itself to report pending events (NotifyNow).
    static constexpr UINT notifyMessage = WM_USER + 1;

    // The window owns this object; its grid must already exist.
    explicit GridAccessibility(FlexGridWindow& window);
    ~GridAccessibility() override;
    GridAccessibility(const GridAccessibility&) = delete;
    GridAccessibility& operator=(const GridAccessibility&) = delete;

    // Not owned; null for a grid without a control around it.
    void SetHost(AccessibleHost* host) { link_->host = host; }
    // Handles WM_GETOBJECT.
    std::optional<LRESULT> Answer(WPARAM wParam, LPARAM lParam);
    void FocusCame();
    // The user has given a cell another text.
    void ValueEntered(int row, int col);
    void NotifyNow();
    // The window has been destroyed; another may be created later.
    void Gone() { events_ = {}; }

  private:
    // GridListener
    void RowColChange() override;
    void SelChange() override;
    void Invalidated(GridChange change, const CellRange& range) override;

    template <class NoteDown>
    void Note(NoteDown note);

    std::shared_ptr<AccessibleLink> link_;
    AccessibleEvents events_;
};

}  // namespace qvx::flexgrid
