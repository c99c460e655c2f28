// Loading records into the grid: what the user sees meanwhile, and which events the host gets.
#include <limits>

#include "common/number_text.h"
#include "controls/grid/entry_grid_window.h"
#include "controls/grid/lifecycle.h"
#include "controls/grid/row_operations.h"
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

// Names are only asked for if fields are chosen by name: not every record set has them, and no array.
FieldMap MapFor(const flexgrid::Grid& grid, const ControlState& state, RecordSource& records) {
    if (state.bindFields.empty()) return {};
    const std::vector<Text> names = records.FieldNames();
    return names.empty() ? FieldMap() : FieldMap(grid, state, names);
}

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
    const FieldMap map = MapFor(Model(), state_, records);
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
    ChangeRows([&] {
        const RowStates::Loading loading(states_);
        states_.Forget();
        Model().SetRows(1);
    });
    Model().ClearSortMarks();
    ClearFilter();
    if (!wanted()) return;
    const std::int64_t total = records.Count();
    if (!wanted()) return;
    if (total != 0) {
        Load(map, records, total, wanted);
    } else {
        ChangeRows([&] {
            const RowStates::Loading loading(states_);
            Model().SetRows(2);
        });
        if (wanted() && state_.autoRecordNumber) Model().SetTextMatrix(Model().FixedRows(), 0, IntegerToText(1));
    }
    if (wanted()) NotifyRowsChanged();
}

void EntryGrid::Append(RecordSource& records) {
    const int binding = ++bindings_;
    const auto wanted = [&] { return binding == bindings_; };
    CommitOpenEdit();
    const FieldMap map = MapFor(Model(), state_, records);
    if (!wanted()) return;
    const std::int64_t total = records.Count();
    if (total == 0 || !wanted()) return;
    const int first = Model().FixedRows();
    const int before = Model().Rows();
    const bool blank = before == first + 1 && IsEmptyRecord(Model(), state_, first);
    Load(map, records, total, wanted);
    if (!wanted()) return;
    ChangeRows([&] {
        const RowStates::Loading loading(states_);
        const bool replaces = blank && Model().Rows() > before;
        if (replaces) Model().RemoveItem(first);
        RenumberFrom(Model(), state_, replaces ? first : before);
    });
    if (wanted()) NotifyRowsChanged();
}

void EntryGrid::Load(const FieldMap& map, RecordSource& records, std::int64_t total,
                     const std::function<bool()>& wanted) {
    const Hidden hidden(window_->Handle());
    ProgressClock clock(GetTickCount64());
    ChangeRows([&] {
        LoadRecords(Model(), state_, states_, map, records, wanted,
                    [&](std::int64_t loaded) { return GoOnBinding(loaded, total, clock); });
    });
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
