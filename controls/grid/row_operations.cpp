#include "controls/grid/row_operations.h"

#include <algorithm>
#include <new>
#include <vector>

#include "common/run_time_error.h"
#include "common/text_compare.h"
#include "controls/grid/cell_reading.h"
#include "controls/grid/column_lists.h"
#include "controls/grid/lifecycle.h"

namespace qvx::grid {
namespace {

// Decides which rows are empty. The columns are examined once, because the row of captions is the last that may be
// removed.
class EmptyRows {
  public:
    EmptyRows(const flexgrid::Grid& grid, const ControlState& state, bool byKeyColumn)
        : cols_(grid.Cols()),
          firstCol_(FirstRecordColumn(state)),
          keyColumn_(byKeyColumn ? std::max(state.keyColumn, -1) : -1),
          numeric_(static_cast<std::size_t>(cols_)) {
        if (keyColumn_ >= 0) return;
        for (int col = firstCol_; col < cols_ && grid.Rows() > 0; ++col) {
            numeric_[static_cast<std::size_t>(col)] =
                HasColumnCode(grid, state.columnsDataType, col, data_type::digits) ||
                HasColumnCode(grid, state.columnsDataType, col, data_type::numerics);
        }
    }

    bool operator()(const flexgrid::RowView& cells) const {
        // A key column that does not exist says nothing about the rows.
        if (keyColumn_ >= 0) return keyColumn_ < cols_ && cells[keyColumn_].Empty();
        const int end = std::min(cols_, cells.Count());  // all cells after it are empty
        for (int col = firstCol_; col < end; ++col) {
            const flexgrid::CellView cell = cells[col];
            if (numeric_[static_cast<std::size_t>(col)] ? NumberIn(cell) != 0 : !IsBlank(cell)) return false;
        }
        return true;
    }

  private:
    int cols_;
    int firstCol_;
    int keyColumn_;  // -1 for none
    std::vector<bool> numeric_;
};

// Executes a step and ignores its errors; false when there was one.
template <class Step>
bool Trapped(Step step) {
    try {
        step();
        return true;
    } catch (const RunTimeError&) {
        return false;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

void RemoveInOnePass(flexgrid::Grid& grid, const EmptyRows& isEmpty) {
    std::vector<bool> empty(static_cast<std::size_t>(grid.Rows()));
    grid.ForEachRow(grid.FixedRows(), grid.Rows() - 1, [&](int row, const flexgrid::RowView& cells) {
        empty[static_cast<std::size_t>(row)] = isEmpty(cells);
    });
    grid.RemoveRowsIf([&](int row) { return empty[static_cast<std::size_t>(row)]; });
}

// Used when listeners change the grid while rows are being removed: each row is checked when its turn comes.
void RemoveOneByOne(flexgrid::Grid& grid, const EmptyRows& isEmpty) {
    const int first = grid.FixedRows();
    for (int row = grid.Rows() - 1; row >= first; --row) {
        Trapped([&] {
            bool empty = false;
            grid.ForEachRow(row, row, [&](int, const flexgrid::RowView& cells) { empty = isEmpty(cells); });
            if (empty) grid.RemoveItem(row);
        });
    }
}

}  // namespace

bool IsEmptyRecord(const flexgrid::Grid& grid, const ControlState& state, int row) {
    const EmptyRows isEmpty(grid, state, false);
    bool empty = false;
    grid.ForEachRow(row, row, [&](int, const flexgrid::RowView& cells) { empty = isEmpty(cells); });
    return empty;
}

void RemoveEmptyRows(flexgrid::Grid& grid, const ControlState& state, bool byKeyColumn) {
    Trapped([&] {
        const EmptyRows isEmpty(grid, state, byKeyColumn);
        if (!Trapped([&] { RemoveInOnePass(grid, isEmpty); })) RemoveOneByOne(grid, isEmpty);
    });
    Trapped([&] { Renumber(grid, state); });
}

void RemoveAllRecords(flexgrid::Grid& grid, ControlState& state, EditHistory& history) {
    flexgrid::Grid::AllOrNothing whole(grid, flexgrid::Grid::AllOrNothing::Reach::all);
    grid.SetRows(grid.WantedFixedRows() + 1);
    ClearRow(grid, grid.FixedRows(), allColumns, {});
    whole.Commit();
    grid.ClearSortMarks();
    history.Clear();
    state.changed = false;
}

void ClearRow(flexgrid::Grid& grid, int row, TextView clearCols, TextView avoidCols) {
    flexgrid::Grid::AllOrNothing whole(grid, flexgrid::Grid::AllOrNothing::Reach::texts);
    const bool listed = avoidCols.empty() && !EqualNoCase(clearCols, allColumns);
    for (int col = listed ? 0 : grid.FixedCols(); col < grid.Cols(); ++col) {
        if (IsListedColumn(grid, listed ? clearCols : avoidCols, col) != listed) continue;
        if (!grid.Cell(row, col).Empty()) grid.SetTextMatrix(row, col, {});
    }
    whole.Commit();
}

}  // namespace qvx::grid
