// Sorting by the user and by the host, and what the user sees meanwhile.
#include "common/locale.h"
#include "controls/grid/entry_grid_window.h"
#include "win/queued_messages.h"

namespace qvx::grid {
namespace {

// Shows the hourglass once a sort has taken long, and ends it when the user presses Escape in this program after that.
class SortWait {
  public:
    SortWait() = default;
    ~SortWait() {
        if (before_) SetCursor(*before_);
    }
    SortWait(const SortWait&) = delete;
    SortWait& operator=(const SortWait&) = delete;

    bool GoOn() {
        constexpr ULONGLONG longTime = 500;  // milliseconds
        if (GetTickCount64() - start_ < longTime) return true;
        if (!before_) before_ = SetCursor(LoadCursorW(nullptr, IDC_WAIT));
        if (GetWindowThreadProcessId(GetForegroundWindow(), nullptr) != GetCurrentThreadId()) return true;
        if (GetAsyncKeyState(VK_ESCAPE) >= 0) return true;
        // The key has done its work and must not close the dialog with the grid as well.
        QueuedMessages queue;
        MSG message;
        while (queue.Take(message, nullptr, WM_KEYDOWN, WM_KEYDOWN)) {
        }
        return false;
    }

  private:
    ULONGLONG start_ = GetTickCount64();
    std::optional<HCURSOR> before_;
};

}  // namespace

bool EntryGrid::SortBy(const SortColumns& columns) {
    flexgrid::Grid& grid = Model();
    const bool follows =
        grid.Row() >= grid.FixedRows() && grid.Row() < grid.Rows() && window_->RowIsVisible(grid.Row());
    const int offset = grid.Row() - grid.TopRow();
    SortWait wait;
    const SortHelp help{AppendSystemSortKey, SystemDateSettings(), [&] { return wait.GoOn(); }};
    bool done = false;
    ChangeKeptRows([&] { done = SortRows(grid, state_, history_, columns, help); });
    // The record with the cursor stays at its height in the window.
    if (done && follows) window_->ScrollTo(grid.Row() - offset, grid.LeftCol());
    // Between the two, there may be more rows now that a filter shows.
    if (done && follows && grid.FilteredRows() > 0) window_->ScrollIntoView(grid.Row(), grid.LeftCol());
    return done;
}

void EntryGrid::Sort(TextView columns) {
    CommitOpenEdit();
    const std::optional<SortColumns> wanted = ReadSortColumns(Model(), columns);
    if (!wanted) throw RunTimeError(errors::invalidPropertyValue, u"Invalid property value");
    if (!EditIsOpen()) SortBy(*wanted);
}

void EntryGrid::SortByUser(const SortColumns& columns) {
    const Text text = SortColumnsText(Model(), columns);
    bool cancel = false;
    events_.BeforeSort(text, cancel);
    const auto gone = [&](const flexgrid::SortMark& column) { return column.col >= Model().Cols(); };
    if (cancel || EditIsOpen() || std::any_of(columns.begin(), columns.end(), gone)) return;
    if (SortBy(columns)) events_.Sorted(text);
}

void EntryGrid::HeaderClick(int col, bool shift) {
    const auto keep = events_.KeepAlive();
    try {
        CommitOpenEdit();
        if (!EditIsOpen() && col < Model().Cols()) SortByUser(ClickedSortColumns(Model(), col, shift));
    } catch (...) {
        const RunTimeError error = CurrentError();
        events_.ReportError(error.Number(), error.Description());
    }
}

}  // namespace qvx::grid
