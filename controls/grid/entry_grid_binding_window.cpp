// Records into the grid: what the user sees and the host hears meanwhile.
#include <limits>

#include "common/number_text.h"
#include "controls/grid/entry_grid_window.h"
#include "win/queued_messages.h"

namespace qvx::grid {
namespace {

// Out of sight for the length of a scope.
class Hidden {
  public:
    explicit Hidden(HWND window) : window_(window) { ShowWindow(window_, SW_HIDE); }
    ~Hidden() { ShowWindow(window_, SW_SHOWNA); }
    Hidden(const Hidden&) = delete;
    Hidden& operator=(const Hidden&) = delete;

  private:
    HWND window_;
};

// The thread's windows are painted, but no input is taken. A window that never counts as painted must not hold this up.
void AnswerPaints() {
    constexpr int most = 64;
    QueuedMessages queue;
    MSG message;
    for (int i = 0; i < most && queue.Take(message, nullptr, WM_PAINT, WM_PAINT, PM_QS_PAINT); ++i)
        DispatchMessageW(&message);
}

long ToLong(std::int64_t number) {
    return static_cast<long>(std::min<std::int64_t>(number, std::numeric_limits<long>::max()));
}

}  // namespace

// Handlers of whatever this raises, and the records themselves, may ask for another set of records. That one is loaded
// whole by then, and this one has nothing left to do.
void EntryGrid::Bind(RecordSource& records) {
    const int binding = ++bindings_;
    const auto wanted = [&] { return binding == bindings_; };
    CommitOpenEdit();
    state_.changed = false;
    if (!wanted()) return;
    // The rows go when nobody is told any more: a handler might fill the grid with others, which must not go.
    if (Model().Row() > 0 && Model().Cols() > 0) ChangeRows([&] { Model().MoveTo(0, Model().Col()); });
    if (!wanted()) {
        const bool onHeader = Model().Row() < Model().FixedRows() && Model().FixedRows() < Model().Rows();
        if (onHeader) Model().MoveTo(Model().FixedRows(), Model().Col());
        return;
    }
    ChangeRows([&] { Model().SetRows(1); });
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
