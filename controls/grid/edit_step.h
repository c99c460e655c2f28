// One step of a history of edits: cells with another text, rows that came and went.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "common/text.h"
#include "widgets/flexgrid/grid.h"

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

// Changes in the order in which they happened, packed: cells side by side are one change, and their texts lie behind
// one another as bytes, one a character where that is enough.
class EditStep {
  public:
    void AddCell(int row, int col, flexgrid::CellView before, TextView after);
    // Neighbouring cells of one row at once, from column `col` on; those whose text stays the same are left out.
    void AddCells(int row, int col, const flexgrid::RowView& before, std::span<const TextView> after);
    // The next change of rows is added without any memory.
    void ReserveChange();
    void AddRowsInserted(int at, int count);
    void AddRowsRemoved(int at, KeptRows rows);

    bool Empty() const { return changes_.empty(); }
    bool RowsChanged() const { return rowsChanged_; }
    // What it takes in memory, in characters.
    std::size_t Characters() const;
    // visit(row, col, TextView before, TextView after) for every cell; what was changed last comes first when
    // `backwards`, but cells side by side from left to right. The texts are good until visit returns.
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
    enum class Kind { cells, rowsInserted, rowsRemoved };
    struct Change {
        Kind kind;
        int row;
        int col;            // the first cell's
        int count;          // of cells or rows
        std::size_t texts;  // where the cells' texts begin: before and after of the first, and so on
    };
    // Texts taken out of the bytes one after the other.
    class Reader {
      public:
        Reader(const EditStep& step, const Change& change) : at_(step.bytes_.data() + change.texts) {}
        void AppendNext(Text& text);
        void Skip();

      private:
        std::size_t TakeSize(bool& wide);
        const std::uint8_t* at_;
    };
    class Writer;

    void AddCellTexts(Writer& writer, int row, int col, flexgrid::CellView before, TextView after);
    void RevertCells(flexgrid::Grid& grid, const Change& change, EditStep& made) const;
    static KeptRows TakeRows(flexgrid::Grid& grid, int at, int count);
    static void PutRows(flexgrid::Grid& grid, int at, const KeptRows& rows);

    std::vector<Change> changes_;
    std::vector<std::uint8_t> bytes_;
    std::vector<KeptRows> kept_;
    bool rowsChanged_ = false;
};

template <class Visit>
void EditStep::ForEachCell(bool backwards, Visit visit) const {
    Text before;
    Text after;
    for (std::size_t i = 0; i < changes_.size(); ++i) {
        const Change& change = backwards ? changes_[changes_.size() - 1 - i] : changes_[i];
        if (change.kind != Kind::cells) continue;
        Reader reader(*this, change);
        for (int cell = 0; cell < change.count; ++cell) {
            before.clear();
            after.clear();
            reader.AppendNext(before);
            reader.AppendNext(after);
            visit(change.row, change.col + cell, TextView(before), TextView(after));
        }
    }
}

template <class Go>
EditStep EditStep::Revert(flexgrid::Grid& grid, Go go) const {
    EditStep made;
    std::size_t kept = kept_.size();
    for (std::size_t left = changes_.size(); left > 0; --left) {
        const Change& change = changes_[left - 1];
        if (change.kind == Kind::cells) {
            RevertCells(grid, change, made);
            continue;
        }
        if (change.kind == Kind::rowsInserted) {
            made.AddRowsRemoved(change.row, TakeRows(grid, change.row, change.count));
        } else {
            PutRows(grid, change.row, kept_[--kept]);
            made.AddRowsInserted(change.row, change.count);
        }
        if (!go()) break;
    }
    return made;
}

}  // namespace qvx::grid
