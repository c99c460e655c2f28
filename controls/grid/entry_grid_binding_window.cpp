// Loading records into the grid: what the user sees meanwhile, and which events the host gets.
#include <limits>

#include "common/number_text.h"
#include "controls/grid/entry_grid_window.h"
#include "win/queued_messages.h"

namespace qvx::grid {
namespace {

// Hides a window for the duration of a scope.
class Hidden {
  public:
    explicit Hidden(HWND window) : window_(window) { ShowWindow(window_, SW_HIDE); }
    ~Hidden() { ShowWindow(window_, SW_SHOWNA); }
    Hidden(const Hidden&) = delete;
    Hidden& operator=(const Hidden&) = delete;

  private:
    HWND window_;
};

long ToLong(std::int64_t number) {
    return static_cast<long>(std::min<std::int64_t>(number, std::numeric_limits<long>::max()));
}

}  // namespace

// The limit is for a window that never validates its area.
void EntryGrid::AnswerPaints() {
    constexpr int most = 64;
    QueuedMessages queue;
    MSG message;
    for (int i = 0; i < most && queue.Take(message, nullptr, WM_PAINT, WM_PAINT, PM_QS_PAINT); ++i)
        DispatchMessageW(&message);
}

// Event handlers, and the records themselves, may call Bind with another set of records. That one is completely loaded
// by then, and this call has nothing left to do.
void EntryGrid::Bind(RecordSource& records) {
    const int binding = ++bindings_;
    const auto wanted = [&] { return binding == bindings_; };
    CommitOpenEdit();
    state_.changed = false;
    if (!wanted()) return;
    // The rows are removed when no more events are raised: a handler might fill the grid with other rows, which must
    // stay.
    if (Model().Row() > 0 && Model().Cols() > 0) ChangeRows([&] { Model().MoveTo(0, Model().Col()); });
    if (!wanted()) {
        const bool onHeader = Model().Row() < Model().FixedRows() && Model().FixedRows() < Model().Rows();
        if (onHeader) Model().MoveTo(Model().FixedRows(), Model().Col());
        return;
    }
    ChangeRows([&] { Model().SetRows(1); });
    Model().ClearSortMarks();
    ClearFilter();
    if (!wanted()) return;
    const std::int64_t total = records.Count();
    if (!wanted()) return;
    if (total != 0) {
        const Hidden hidden(window_->Handle());
        ProgressClock clock(GetTickCount64());
        ChangeRows([&] {
            LoadRecords(Model(), state_, records, wanted,
                        [&](std::int64_t loaded) { return GoOnBinding(loaded, total, clock); });
        });
    } else {
        ChangeRows([&] { Model().SetRows(2); });
        if (wanted() && state_.autoRecordNumber) Model().SetTextMatrix(Model().FixedRows(), 0, IntegerToText(1));
    }
    if (wanted()) NotifyRowsChanged();
}

bool EntryGrid::GoOnBinding(std::int64_t loaded, std::int64_t total, ProgressClock& clock) {
    bool cancel = false;
    if (clock.Due(GetTickCount64())) {
        events_.BindProgress(ToLong(loaded), ToLong(total), cancel);
        AnswerPaints();
    }
    return !cancel;
}

}  // namespace qvx::grid
