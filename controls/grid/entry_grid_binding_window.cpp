// Records into the grid: what the user sees and the host hears meanwhile.
#include <limits>

#include "common/number_text.h"
#include "controls/grid/entry_grid_window.h"

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
    MSG message;
    for (int i = 0; i < most && PeekMessageW(&message, nullptr, WM_PAINT, WM_PAINT, PM_REMOVE | PM_QS_PAINT); ++i)
        DispatchMessageW(&message);
}

long ToLong(std::int64_t number) {
    return static_cast<long>(std::min<std::int64_t>(number, std::numeric_limits<long>::max()));
}

}  // namespace

void EntryGrid::Bind(RecordSource& records) {
    const int binding = ++bindings_;
    CommitOpenEdit();
    state_.changed = false;
    ChangeRows([&] { Model().SetRows(1); });
    const std::int64_t total = records.Count();
    if (total != 0) {
        const Hidden hidden(window_->Handle());
        ProgressClock clock(GetTickCount64());
        ChangeRows([&] {
            LoadRecords(Model(), state_, records,
                        [&](std::int64_t loaded) { return GoOnBinding(binding, loaded, total, clock); });
        });
    } else {
        ChangeRows([&] { Model().SetRows(2); });
        if (state_.autoRecordNumber) Model().SetTextMatrix(Model().FixedRows(), 0, IntegerToText(1));
    }
    if (binding == bindings_) TellThatRowsChanged();
}

bool EntryGrid::GoOnBinding(int binding, std::int64_t loaded, std::int64_t total, ProgressClock& clock) {
    bool cancel = false;
    if (clock.Due(GetTickCount64())) {
        events_.BindProgress(ToLong(loaded), ToLong(total), cancel);
        AnswerPaints();
    }
    return !cancel && binding == bindings_;
}

}  // namespace qvx::grid
