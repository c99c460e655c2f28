// The cells that a grid for data entry shows as invalid while it is being filled in: those that break a rule of their
// column, except in rows that are still empty.
#pragma once

#include <optional>
#include <vector>

#include "controls/grid/cell_place.h"
#include "controls/grid/column_checks.h"

namespace qvx::grid {

class InvalidMarks final {
  public:
    // Both must outlive this.
    InvalidMarks(const flexgrid::Grid& grid, const ControlState& state) : grid_(grid), state_(state) {}

    // To be called before cells are examined, after a change of the rules.
    void Prepare() const { columns_ = CheckedColumns(grid_, state_, false); }
    bool IsMarked(int row, int col) const { return !MessageAt(row, col).empty(); }

    // These need no preparation. What is wrong with a cell; "" for one that is not marked.
    TextView MessageOf(int row, int col) const;
    // Returns the marked cell after the given one, row by row and from the first row again after the last; nullopt
    // without any, also when the given one is the only one.
    std::optional<CellPlace> Next(CellPlace place) const;

  private:
    TextView MessageAt(int row, int col) const;
    std::optional<CellPlace> FirstIn(CellPlace first, int lastRow) const;

    const flexgrid::Grid& grid_;
    const ControlState& state_;
    mutable std::vector<CheckedColumn> columns_;
};

}  // namespace qvx::grid
