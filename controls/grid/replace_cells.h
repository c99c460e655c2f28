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
    // Returns what has become of the cells, once all rows are written.
    Replacements Done();

  private:
    struct Hit {
        int col;
        Text before;
        Text after;
    };

    void FollowColumns();
    void CountLastRow();

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
    std::int64_t wanted_ = 0;  // the cells that should have got another text
    std::int64_t replaced_ = 0;
};

// Replaces the text in all hits, or in one of them, as one step of the history. Raises the grid's errors as CellWriter
// does.
template <ChangeEvents Events>
Replacements ReplaceCells(flexgrid::Grid& grid, ControlState& state, EditHistory& history, Events& events,
                          const CellSources& sources, const CellSearch& search, TextView with,
                          std::optional<CellPlace> only = std::nullopt) {
    ReplacedRows rows(grid, state, search, with, only);
    if (rows.Target().Empty()) return {};
    CellWriter<Events>(grid, state, history, events, sources)
        .Write(CellRectangle::ForNewRows(rows.Target(), [&](int row) { return rows.TextsOf(row); }));
    return rows.Done();
}

}  // namespace qvx::grid
