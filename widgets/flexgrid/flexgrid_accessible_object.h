// The grid's objects for assistive programs, and the events these are sent: what accessible_view.h and
// accessible_events.h decide, by the system's interface.
#pragma once

#include <windows.h>

#include <memory>
#include <optional>

#include "common/text.h"
#include "widgets/flexgrid/accessible_events.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::flexgrid {

class FlexGridWindow;

// What only the control around the grid knows of it.
class AccessibleHost {
  public:
    virtual ~AccessibleHost() = default;
    // What the grid is called; empty for no name.
    virtual Text AccessibleName() = 0;
    // Whether the user may change the cell.
    virtual bool IsEditable(int row, int col) = 0;
    // The text of an editor that is open over the cell.
    virtual std::optional<Text> EditedText(int row, int col) = 0;
    // Opens the editor over the current cell, or enters a text there as if it were typed. False when that is refused.
    virtual bool BeginEdit() = 0;
    virtual bool EnterText(TextView text) = 0;
};

// Clients keep objects for as long as they like: the link outlives the window and then leads nowhere.
struct AccessibleLink {
    FlexGridWindow* window = nullptr;
    AccessibleHost* host = nullptr;
};

// A window's side of it.
class GridAccessibility final : private GridListener {
  public:
    // The window's own message that it sends itself to have what is pending told (NotifyNow).
    static constexpr UINT notifyMessage = WM_USER + 1;

    // The window owns this, and its grid is there already.
    explicit GridAccessibility(FlexGridWindow& window);
    ~GridAccessibility() override;
    GridAccessibility(const GridAccessibility&) = delete;
    GridAccessibility& operator=(const GridAccessibility&) = delete;

    // Not owned; null for a grid without a control around it.
    void SetHost(AccessibleHost* host) { link_->host = host; }
    // WM_GETOBJECT.
    std::optional<LRESULT> Answer(WPARAM wParam, LPARAM lParam);
    void FocusCame();
    // The user has given a cell another text.
    void ValueEntered(int row, int col);
    void NotifyNow();
    // The window is gone; there may be another later.
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
