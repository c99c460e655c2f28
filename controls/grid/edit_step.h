// One step of a history of edits: cells with new texts, inserted and removed rows, rows in another order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "common/text.h"
#include "widgets/flexgrid/arena.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

// Adjacent rows in their previous state: their texts, one after the other, and their other settings.
struct KeptRows {
    struct Row {
        std::size_t cells = 0;  // up to the last that holds text
        flexgrid::Grid::RowSettings settings;
    };
    Text texts;
    std::vector<std::uint32_t> sizes;  // of the cells
    std::vector<Row> rows;

    std::size_t Characters() const { return texts.size() + 2 * sizes.size() + 20 * rows.size(); }
};

// Copies rows `at` to `at + count - 1`, as far as they exist.
KeptRows KeepRows(const flexgrid::Grid& grid, int at, int count);

// Changes in the order in which they happened. The texts of adjacent cells are packed like a row of the grid, those
// from before and those from afterwards.
class EditStep {
  public:
    void AddCell(int row, int col, flexgrid::CellView before, flexgrid::CellView after);
    // Adds `count` adjacent cells of one row at once, from column `col` on: `before` is the whole row, `after` has
    // their new texts from its first cell on. Those whose text stays the same are omitted.
    void AddCells(int row, int col, const flexgrid::RowView& before, const flexgrid::RowView& after, int count);
    // Reserves memory, so that adding the next change of rows needs none.
    void ReserveChange();
    void AddRowsInserted(int at, int count);
    void AddRowsRemoved(int at, KeptRows rows);
    // Adds another order of the rows from `first` on: rows[i] is the previous number of row first + i. `marks` are
    // those from before.
    void AddRowsOrdered(int first, std::vector<std::uint32_t> rows, std::vector<flexgrid::SortMark> marks);
    // Adds a column that has moved from one place to another. It is the only change of its step.
    void AddColumnMoved(int from, int to);

    bool Empty() const { return changes_.empty(); }
    bool RowsChanged() const { return rowsChanged_; }
    // The move of a column that the step consists of, if it is one.
    struct ColumnMove {
        int from;
        int to;
    };
    std::optional<ColumnMove> MovedColumn() const;
    // Returns its memory use, in characters.
    std::size_t Characters() const;
    // Calls visit(row, col, TextView before, TextView after) for every cell; with `backwards` the last change comes
    // first, but adjacent cells still from left to right. The texts are valid until visit returns.
    template <class Visit>
    void ForEachCell(bool backwards, Visit visit) const;
    // The topmost row that the step has changed, and the leftmost of the cells changed there; -1 for none. Orders of
    // rows and columns have no place, because the cursor stays on its record and in its column.
    struct Place {
        int row = -1;
        int col = -1;
    };
    Place FirstPlace() const;

    // Undoes the changes, the last one first, and returns what was done for this as a step itself. `go()` is called
    // after every change of rows, which a handler may have followed with changes of its own: false ends the undoing.
    template <class Go>
    EditStep Revert(flexgrid::Grid& grid, Go go) const;

  private:
    enum class Kind { cells, rowsInserted, rowsRemoved, rowsOrdered, columnMoved };
    struct KeptOrder {
        std::vector<std::uint32_t> rows;
        std::vector<flexgrid::SortMark> marks;
    };
    struct Change {
        Kind kind;
        int row;
        int col;    // of the first cell, or that which has moved
        int count;  // of cells or rows, or the column's new number
        // The cells' records; 0 for empty cells.
        flexgrid::Arena::Address before = 0;
        flexgrid::Arena::Address after = 0;
    };

    flexgrid::Arena::Address Keep(std::span<const std::uint8_t> record);
    flexgrid::RowView KeptCells(flexgrid::Arena::Address address) const {
        return flexgrid::RowView(address == 0 ? nullptr : records_.At(address));
    }
    // Returns the first of the changes of adjacent cells, from left to right, that end with this one.
    std::size_t FirstAdjacent(std::size_t change) const;
    void RevertCells(flexgrid::Grid& grid, const Change& change, EditStep& made) const;
    static KeptRows TakeRows(flexgrid::Grid& grid, int at, int count);
    static void PutRows(flexgrid::Grid& grid, int at, const KeptRows& rows);
    static void PutColumn(flexgrid::Grid& grid, const Change& change, EditStep& made);
    static void PutOrder(flexgrid::Grid& grid, int first, const KeptOrder& order, EditStep& made);

    std::vector<Change> changes_;
    flexgrid::Arena records_;
    flexgrid::RecordBuilder builder_;
    std::vector<KeptRows> kept_;
    std::vector<KeptOrder> orders_;
    bool rowsChanged_ = false;
};

template <class Visit>
void EditStep::ForEachCell(bool backwards, Visit visit) const {
    Text before;
    Text after;
    const auto visitChange = [&](const Change& change) {
        if (change.kind != Kind::cells) return;
        const flexgrid::RowView old = KeptCells(change.before);
        const flexgrid::RowView fresh = KeptCells(change.after);
        for (int cell = 0; cell < change.count; ++cell)
            visit(change.row, change.col + cell, old[cell].AsWide(before), fresh[cell].AsWide(after));
    };
    if (!backwards) {
        for (const Change& change : changes_) visitChange(change);
        return;
    }
    for (std::size_t end = changes_.size(); end > 0;) {
        const std::size_t first = FirstAdjacent(end - 1);
        for (std::size_t i = first; i < end; ++i) visitChange(changes_[i]);
        end = first;
    }
}

template <class Go>
EditStep EditStep::Revert(flexgrid::Grid& grid, Go go) const {
    EditStep made;
    std::size_t kept = kept_.size();
    std::size_t orders = orders_.size();
    for (std::size_t left = changes_.size(); left > 0;) {
        const std::size_t first = FirstAdjacent(left - 1);
        const Change& change = changes_[first];
        if (change.kind == Kind::cells) {
            for (std::size_t i = first; i < left; ++i) RevertCells(grid, changes_[i], made);
            left = first;
            continue;
        }
        --left;
        if (change.kind == Kind::columnMoved) {
            PutColumn(grid, change, made);
        } else if (change.kind == Kind::rowsInserted) {
            made.AddRowsRemoved(change.row, TakeRows(grid, change.row, change.count));
        } else if (change.kind == Kind::rowsOrdered) {
            PutOrder(grid, change.row, orders_[--orders], made);
        } else {
            PutRows(grid, change.row, kept_[--kept]);
            made.AddRowsInserted(change.row, change.count);
        }
        if (!go()) break;
    }
    return made;
}

}  // namespace qvx::grid
