// One step of a history of edits: cells with another text, rows that came and went.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "common/text.h"
#include "elements/flexgrid/grid.h"

namespace qvx::grid {

// Neighbouring rows as they were: their texts, one behind the other, and what else was set for them.
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

// Rows `at` to `at + count - 1`, as far as there are such.
KeptRows KeepRows(const flexgrid::Grid& grid, int at, int count);

// Changes in the order in which they happened, packed: a pasted cell takes 20 bytes besides its two texts.
class EditStep {
  public:
    void AddCell(int row, int col, flexgrid::CellView before, TextView after);
    void AddRowsInserted(int at, int count);
    void AddRowsRemoved(int at, KeptRows rows);

    bool Empty() const { return changes_.empty(); }
    bool RowsChanged() const { return rowsChanged_; }
    // What it takes in memory, in characters.
    std::size_t Characters() const;
    // visit(row, col, TextView before, TextView after) for every cell, the last changed first when `backwards`.
    template <class Visit>
    void ForEachCell(bool backwards, Visit visit) const;
    // The upmost row that it has changed, and the leftmost of the cells changed there; -1 for none.
    struct Place {
        int row = -1;
        int col = -1;
    };
    Place FirstPlace() const;

    // Takes the changes back, the last one first; what is done for that is returned as a step itself. `go()` is asked
    // after every change of rows, which a handler may have answered with changes of its own: false ends it.
    template <class Go>
    EditStep Revert(flexgrid::Grid& grid, Go go) const;

  private:
    enum class Kind : std::uint32_t { cell, rowsInserted, rowsRemoved };
    struct Change {
        Kind kind;
        int row;
        int col;                      // a cell's; else the number of rows
        std::uint32_t before, after;  // characters of a cell's texts
    };

    // Cells of one row that lie side by side, from changes_[last] backwards.
    std::size_t RunEndingAt(std::size_t last) const;
    void RevertCells(flexgrid::Grid& grid, std::size_t first, std::size_t last, std::size_t& textEnd,
                     EditStep& made) const;
    static KeptRows TakeRows(flexgrid::Grid& grid, int at, int count);
    static void PutRows(flexgrid::Grid& grid, int at, const KeptRows& rows);

    std::vector<Change> changes_;
    Text texts_;  // of the cells, before and after
    std::vector<KeptRows> kept_;
    bool rowsChanged_ = false;
};

template <class Visit>
void EditStep::ForEachCell(bool backwards, Visit visit) const {
    std::size_t at = backwards ? texts_.size() : 0;
    const TextView texts = texts_;
    for (std::size_t i = 0; i < changes_.size(); ++i) {
        const Change& change = backwards ? changes_[changes_.size() - 1 - i] : changes_[i];
        if (change.kind != Kind::cell) continue;
        const std::size_t size = std::size_t{change.before} + change.after;
        if (backwards) at -= size;
        visit(change.row, change.col, texts.substr(at, change.before), texts.substr(at + change.before, change.after));
        if (!backwards) at += size;
    }
}

template <class Go>
EditStep EditStep::Revert(flexgrid::Grid& grid, Go go) const {
    EditStep made;
    std::size_t textEnd = texts_.size();
    std::size_t kept = kept_.size();
    for (std::size_t left = changes_.size(); left > 0;) {
        const Change& change = changes_[left - 1];
        if (change.kind == Kind::cell) {
            const std::size_t first = RunEndingAt(left - 1);
            RevertCells(grid, first, left - 1, textEnd, made);
            left = first;
            continue;
        }
        if (change.kind == Kind::rowsInserted) {
            made.AddRowsRemoved(change.row, TakeRows(grid, change.row, change.col));
        } else {
            PutRows(grid, change.row, kept_[--kept]);
            made.AddRowsInserted(change.row, change.col);
        }
        if (!go()) break;
        --left;
    }
    return made;
}

}  // namespace qvx::grid
