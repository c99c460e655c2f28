// The interfaces of observers that follow the rows of a grid, and keep what they were before they are changed.
#pragma once

#include <memory>
#include <span>

#include "widgets/flexgrid/record.h"
#include "widgets/flexgrid/sparse_map.h"

namespace qvx::flexgrid {

// Called for every row of a grid, fixed ones included, before its texts are overwritten and before it is removed,
// whatever call does that. Where a call may throw, the grid's call ends with that exception and changes nothing; what
// it has been told so far must then make no difference.
class RowFollower {
  public:
    // Adjacent cells of a row are about to get other texts.
    virtual void CellsChange(RowId row, const RowView& cells, int firstCol, int count) = 0;
    // Rows are about to be inserted. RowGone follows if they are not.
    virtual void RowsCome(std::span<const RowId> rows) = 0;
    // A row is about to be removed. RowGone follows.
    virtual void RowLeaves(RowId row, const RowView& cells) = 0;
    virtual void RowGone(RowId row) noexcept = 0;
    // Existing rows are about to get other positions.
    virtual void OrderChanges() = 0;
    // Called after everything else in the grid's call that can fail.
    virtual void ColumnMoves(int from, int to) = 0;
    virtual void ColumnsCut(int cols) noexcept = 0;
    // Other rows are filtered out than before.
    virtual void FilterChanged() noexcept {}
    // Texts and rows are again what they were some calls ago (Grid::AllOrNothing).
    virtual void RolledBack() noexcept {}

  protected:
    ~RowFollower() = default;
};

// A follower with a state of its own for each row.
class RowWatch : public RowFollower {
  public:
    // The state of a row that is taken out of the grid and may come back as another row.
    using Keepsake = std::shared_ptr<void>;
    virtual Keepsake Keep(RowId row, const RowView& cells) = 0;
    virtual void PutBack(RowId row, const Keepsake& kept) = 0;

    // The state of all rows, to which the grid returns when a change of rows is undone (Grid::AllOrNothing).
    virtual std::shared_ptr<void> Snapshot() = 0;
    virtual void Restore(const std::shared_ptr<void>& snapshot) noexcept = 0;

  protected:
    ~RowWatch() = default;
};

// The observers of a grid, of which there may be one of each kind. Not owned.
class RowObservers {
  public:
    RowWatch* watch = nullptr;
    RowFollower* follower = nullptr;

    explicit operator bool() const { return watch || follower; }
    // Calls call(RowFollower&) for each.
    template <class Call>
    void Notify(Call call) const {
        if (watch) {
            call(*watch);
        }
        if (follower) {
            call(*follower);
        }
    }
};

}  // namespace qvx::flexgrid
