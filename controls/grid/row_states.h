// Which rows of a grid differ from the records that they were loaded from, and what those were.
//
// Every call that changes texts or rows passes through the grid's watch, so that it makes no difference who makes a
// change. A row's originals are copied before its first change and belong to its identity; its state is computed from
// them whenever it is asked for, so that a change that is undone leaves no trace. Most of the code is compiled for its
// size, because only the first change of a row gets there.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "common/text.h"
#include "controls/grid/control_state.h"
#include "controls/grid/row_original.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

enum class RowState { unchanged = 0, added = 1, changed = 2, deleted = 3 };

class RowStates final : public flexgrid::RowWatch {
  public:
    // Both must outlive this.
    RowStates(flexgrid::Grid& grid, const ControlState& state) : grid_(grid), state_(state) {}
    ~RowStates() { Stop(); }
    RowStates(const RowStates&) = delete;
    RowStates& operator=(const RowStates&) = delete;

    // From now on, rows are watched; all of them are unchanged. Nothing is kept while rows are not watched.
    [[gnu::cold]] void Start();
    [[gnu::cold]] void Stop() noexcept;
    bool On() const { return on_; }
    // The rows are to be replaced by others: everything that is known about them is dropped.
    [[gnu::cold]] void Forget() noexcept;
    // Makes all rows unchanged and forgets those that were deleted. The record numbers are afterwards those of records
    // from which the deleted ones are gone, and to which the new ones were added at the end.
    [[gnu::cold]] void Accept();

    // Rows that come while it exists are loaded from records.
    class Loading {
      public:
        explicit Loading(RowStates& states) : states_(states) { ++states_.loading_; }
        ~Loading() { --states_.loading_; }
        Loading(const Loading&) = delete;
        Loading& operator=(const Loading&) = delete;

      private:
        RowStates& states_;
    };

    // Columns before this one are not part of a record: no change of theirs counts.
    int FirstColumn() const;
    // A row without any original text is no record: it is unchanged while it is empty, and new with a text in it.
    // Throws 30009 for a row that is no data row.
    [[gnu::cold]] RowState Of(int row) const;
    // Returns the first row after this one that is new or changed, 0 for none. New rows without text are left out.
    // Throws 30009 for a row that the grid does not have.
    [[gnu::cold]] int NextChanged(int row) const;
    // Whether the row's changes are worth a mark: a new row without text is not yet anything. While an edit is open,
    // its row is marked as it was before, since only the editor has the text.
    bool IsMarked(int row) const;
    // Whether a row has no text that could be part of a record.
    [[gnu::cold]] bool IsEmpty(int row) const;
    // Returns the text of a cell before the first change of its row; "" in new rows. Throws 30009, 30010.
    [[gnu::cold]] Text OriginalText(int row, int col) const;
    // Returns the number of the record that a row was loaded from, from 1; 0 for none.
    int RecordNumber(int row) const;

    int DeletedCount() const;
    // Throws error 9 for an index that does not exist, 30010 for such a column.
    [[gnu::cold]] Text DeletedText(int index, int col) const;
    [[gnu::cold]] const RowOriginal& Deleted(int index) const;

  private:
    struct Rows {
        flexgrid::SparseMap<bool> added;
        flexgrid::SparseMap<std::shared_ptr<RowOriginal>> originals;
        std::vector<std::shared_ptr<RowOriginal>> deleted;  // in the order of their removal; null for restored ones
        std::size_t holes = 0;                              // the null ones
        // The number of each identity's record. While it is empty, the rows are in the order of their records, and
        // those without a record are the last.
        std::vector<int> numbers;
        int loaded = 0;  // the highest number, if there are numbers
    };

    // RowWatch
    void CellsChange(flexgrid::RowId row, const flexgrid::RowView& cells, int firstCol, int count) override;
    void RowsCome(std::span<const flexgrid::RowId> rows) override;
    [[gnu::cold]] void RowLeaves(flexgrid::RowId row, const flexgrid::RowView& cells) override;
    [[gnu::cold]] void RowGone(flexgrid::RowId row) noexcept override;
    void OrderChanges() override {
        if (loading_ == 0) KeepNumbers();
    }
    [[gnu::cold]] void ColumnMoves(int from, int to) override;
    [[gnu::cold]] void ColumnsCut(int cols) noexcept override;
    [[gnu::cold]] Keepsake Keep(flexgrid::RowId row, const flexgrid::RowView& cells) override;
    [[gnu::cold]] void PutBack(flexgrid::RowId row, const Keepsake& kept) override;
    [[gnu::cold]] std::shared_ptr<void> Snapshot() override { return std::make_shared<Rows>(rows_); }
    [[gnu::cold]] void Restore(const std::shared_ptr<void>& snapshot) noexcept override;

    bool IsAdded(flexgrid::RowId row) const { return rows_.added.Find(row) != nullptr; }
    [[gnu::cold]] void KeepNumbers();
    bool HasText(const flexgrid::RowView& cells) const;
    [[gnu::cold]] const std::shared_ptr<RowOriginal>& OriginalOf(flexgrid::RowId row, const flexgrid::RowView& cells);
    flexgrid::RowId CheckedId(int row) const;
    [[gnu::cold]] void Compact() const noexcept;
    void DropPlaces() noexcept;

    flexgrid::Grid& grid_;
    const ControlState& state_;
    mutable Rows rows_;
    std::size_t leaving_ = 0;  // rows that are about to be removed, for whose originals there is room
    int loading_ = 0;
    int edit_ = 0;               // the last edit that has taken a text out of its cell
    bool editedMarked_ = false;  // whether its row had a mark before
    bool on_ = false;
};

}  // namespace qvx::grid
