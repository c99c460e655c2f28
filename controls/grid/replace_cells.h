// Replacing a searched text in the cells of a grid. Each cell gets its new text as if it had been typed: by the rules
// of its column, and with the events of a typed change.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "common/text.h"
#include "controls/grid/cell_search.h"
#include "controls/grid/control_state.h"
#include "controls/grid/edit_history.h"
#include "controls/grid/paste.h"

namespace qvx::grid {

// Numbers of cells. A cell refuses when it keeps its text: its column cannot be edited or does not take the text, or
// the host has refused it. A cell whose text would be the same afterwards is neither.
struct Replacements {
    std::int64_t replaced = 0;
    std::int64_t refused = 0;
    friend bool operator==(const Replacements&, const Replacements&) = default;
};

// The new texts of the hits, row by row.
class ReplacedRows {
  public:
    // All must outlive this object. `only` limits it to one cell.
    ReplacedRows(const flexgrid::Grid& grid, const ControlState& state, const CellSearch& search, TextView with,
                 std::optional<CellPlace> only);

    const flexgrid::CellRange& Target() const { return target_; }
    // Returns the texts of a row from the target's first column on, with `keepsCell` for the cells that are no hits.
    // Valid until the next call.
    std::span<const TextView> TextsOf(int row);
    // The number of cells that should have got another text so far, including those that are known to refuse.
    std::int64_t Wanted() const { return wanted_; }
    // Counts the cells of the last row that have another text now.
    std::int64_t ChangedInLastRow() const;

  private:
    struct Hit {
        int col;
        Text before;
        Text after;
    };

    void FollowColumns();

    const flexgrid::Grid& grid_;
    const ControlState& state_;
    const CellSearch& search_;
    TextView with_;
    flexgrid::CellRange target_;
    std::uint64_t structure_ = 0;
    std::vector<int> columns_;
    std::vector<int> maxLengths_;  // of the grid's columns
    std::vector<Hit> hits_;        // of the last row; kept for its memory
    std::size_t hitCount_ = 0;
    int lastRow_ = -1;
    std::vector<TextView> texts_;
    std::int64_t wanted_ = 0;
};

// Replaces the text in all hits, or in one of them, as one step of the history. Raises the grid's errors as CellWriter
// does.
template <ChangeEvents Events>
Replacements ReplaceCells(flexgrid::Grid& grid, ControlState& state, EditHistory& history, Events& events,
                          const CellSources& sources, const CellSearch& search, TextView with,
                          std::optional<CellPlace> only = std::nullopt) {
    // Counts the changes that the host does not cancel.
    struct CountingEvents {
        Events& events;
        std::int64_t changed = 0;

        bool Listens() { return events.Listens(); }
        void BeforeCellChange(int row, int col, const Text& data, bool& cancel) {
            events.BeforeCellChange(row, col, data, cancel);
        }
        void AfterCellChange(int row, int col, const Text& oldData, const Text& newData, bool& cancel) {
            events.AfterCellChange(row, col, oldData, newData, cancel);
            if (!cancel && newData != oldData) ++changed;
        }
    } counting{events};
    ReplacedRows rows(grid, state, search, with, only);
    if (rows.Target().Empty()) return {};
    const bool listens = events.Listens();
    std::int64_t changed = 0;
    const auto textsOf = [&](int row) {
        if (!listens) changed += rows.ChangedInLastRow();
        return rows.TextsOf(row);
    };
    CellWriter<CountingEvents>(grid, state, history, counting, sources)
        .Write(CellRectangle::ForNewRows(rows.Target(), textsOf));
    changed += listens ? counting.changed : rows.ChangedInLastRow();
    return {changed, rows.Wanted() - changed};
}

}  // namespace qvx::grid
