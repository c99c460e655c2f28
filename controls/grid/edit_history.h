// The history of what the user has done to a grid, for undo and redo.
//
// Changes by the host are not part of it: texts that it writes are not recorded, and when it moves, adds or removes
// rows or columns, or empties the grid, row and column numbers lose their meaning and the history is cleared. The
// grid's structure version shows this, so that a host's calls cost nothing here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <optional>
#include <span>

#include "controls/grid/control_state.h"
#include "controls/grid/edit_step.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

class EditHistory {
  public:
    // The limits of what is recorded; the oldest steps are dropped first. A single step is kept whatever its size.
    struct Limits {
        std::size_t steps = 1000;
        std::size_t characters = 16'000'000;
    };
    using Step = std::shared_ptr<const EditStep>;

    explicit EditHistory(flexgrid::Grid& grid) : EditHistory(grid, Limits()) {}
    EditHistory(flexgrid::Grid& grid, const Limits& limits);
    EditHistory(const EditHistory&) = delete;
    EditHistory& operator=(const EditHistory&) = delete;

    // Everything that is recorded while a group exists is one step. A group whose rows or columns the host has changed
    // leaves none. Nested groups belong to the outer one.
    class Group {
      public:
        explicit Group(EditHistory& history) : history_(history) { history_.Begin(); }
        ~Group() { history_.End(); }
        Group(const Group&) = delete;
        Group& operator=(const Group&) = delete;

      private:
        EditHistory& history_;
    };

    // A group of changes that happen all or not at all (Grid::AllOrNothing): without Commit it leaves no step.
    class WholeGroup {
      public:
        WholeGroup(EditHistory& history, flexgrid::Grid::AllOrNothing::Reach reach);
        ~WholeGroup();
        WholeGroup(const WholeGroup&) = delete;
        WholeGroup& operator=(const WholeGroup&) = delete;
        void Commit() noexcept {
            whole_->Commit();
            whole_.reset();
        }

      private:
        EditHistory& history_;
        Group group_;
        std::uint64_t version_;
        std::optional<flexgrid::Grid::AllOrNothing> whole_;
    };

    // Records that a cell has a new text, written when the grid's structure version was `structure`; does nothing when
    // the texts are equal or the rows have moved since. If memory is short, the history is cleared.
    void CellChanged(std::uint64_t structure, int row, int col, TextView before, flexgrid::CellView after) noexcept;
    void CellChanged(std::uint64_t structure, int row, int col, TextView before, TextView after) noexcept {
        CellChanged(structure, row, col, before, flexgrid::CellView(after.data(), after.size()));
    }
    // Records that `count` adjacent cells of the row `before`, from column `col` on, are about to get the texts of the
    // first cells of another row. May throw std::bad_alloc.
    void CellsChanged(std::uint64_t structure, int row, int col, const flexgrid::RowView& before,
                      const flexgrid::RowView& after, int count);
    // Executes and records `change`, which inserts rows before row `at` and changes nothing else in the grid's rows and
    // columns. What it throws is passed on. It is not executed if there is no memory to record it.
    template <class Change>
    void InsertRows(int at, int count, Change change);
    // Executes and records `change`, which removes rows from row `at` on.
    template <class Change>
    void RemoveRows(int at, int count, Change change);
    // Puts the grid's rows into another order (Grid::OrderRows) and records it.
    void OrderRows(int first, std::vector<std::uint32_t> rows, std::span<const flexgrid::SortMark> marks);
    // Moves a column of the grid (Grid::SetColPosition) and records it, unless it is part of a group with other
    // changes.
    void MoveColumn(int from, int to);

    // ---- Undoing and redoing ---------------------------------------------------------------------------------------
    bool CanUndo() const { return Ready() && !done_.empty(); }
    bool CanRedo() const { return Ready() && !undone_.empty(); }
    // Undo the last step, or redo the last undone one; the current cell moves to where the change is, rows are numbered
    // again, and the grid counts as changed. Return what this has done to the grid; null when there is nothing to do.
    // Errors are passed on, and nothing has changed then.
    Step Undo(ControlState& state) { return Move(done_, undone_, state); }
    Step Redo(ControlState& state) { return Move(undone_, done_, state); }
    // Clears the history. An open group leaves no step.
    void Clear() noexcept;

    // While it exists, there is nothing to undo and redo, and nothing is recorded: for notifications of changes, whose
    // handlers must not undo the change that they are notified of.
    class Pause {
      public:
        explicit Pause(EditHistory& history) : history_(history) { ++history_.paused_; }
        ~Pause() { --history_.paused_; }
        Pause(const Pause&) = delete;
        Pause& operator=(const Pause&) = delete;

      private:
        EditHistory& history_;
    };

  private:
    // Lists, because moving a step from one to another needs no memory.
    using Steps = std::list<std::shared_ptr<EditStep>>;

    bool Ready() const { return depth_ == 0 && paused_ == 0 && version_ == grid_.StructureVersion(); }
    // Clears the history if the structure has changed. Returns false while recording is off.
    bool Follow();
    bool RowsHaveMoved(std::uint64_t before);
    void Begin();
    void End() noexcept;
    EditStep& Pending() { return *fresh_.front(); }
    Step Move(Steps& from, Steps& to, ControlState& state);
    void Push(Steps& stack, Steps& step) noexcept;

    flexgrid::Grid& grid_;
    Limits limits_;
    std::uint64_t version_;  // of the grid's structure that all steps refer to
    Steps done_;
    Steps undone_;
    Steps fresh_;                 // the step of the group, made before any change; empty before the first group
    std::size_t characters_ = 0;  // of both
    int depth_ = 0;               // of groups
    int paused_ = 0;
    bool broken_ = false;  // the host has changed the group's rows, or there is no memory to record it
};

template <class Change>
void EditHistory::InsertRows(int at, int count, Change change) {
    const Group group(*this);
    const bool records = Follow();
    const std::uint64_t before = grid_.StructureVersion();
    if (records) Pending().ReserveChange();
    change();
    if (records && RowsHaveMoved(before)) Pending().AddRowsInserted(at, count);
}

template <class Change>
void EditHistory::RemoveRows(int at, int count, Change change) {
    const Group group(*this);
    const bool records = Follow();
    const std::uint64_t before = grid_.StructureVersion();
    KeptRows kept;
    if (records) {
        kept = KeepRows(grid_, at, count);
        Pending().ReserveChange();
    }
    change();
    if (records && RowsHaveMoved(before)) Pending().AddRowsRemoved(at, std::move(kept));
}

}  // namespace qvx::grid
