// What the user has done to a grid, so that it can be taken back and done again.
//
// What the host does itself is no part of it: texts it writes stay out, and when it moves rows or columns, lets them
// come or go or empties the grid, row and column numbers no longer mean what they meant, and the history begins anew.
// The grid's structure version tells, so that a host's calls cost nothing here.
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
    // At most so much is remembered; the oldest steps go first. A single step is kept whatever its size.
    struct Limits {
        std::size_t steps = 1000;
        std::size_t characters = 16'000'000;
    };
    using Step = std::shared_ptr<const EditStep>;

    explicit EditHistory(flexgrid::Grid& grid) : EditHistory(grid, Limits()) {}
    EditHistory(flexgrid::Grid& grid, const Limits& limits);
    EditHistory(const EditHistory&) = delete;
    EditHistory& operator=(const EditHistory&) = delete;

    // ---- Recording -------------------------------------------------------------------------------------------------
    // All that is recorded in the life of a group is one step. One whose rows or columns the host has meddled with
    // leaves none. Groups within one belong to it.
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

    // A cell has got another text, at a time when the grid's structure version was `structure`; nothing when the texts
    // are equal or the rows have moved since. Without the memory to remember it the history begins anew.
    void CellChanged(std::uint64_t structure, int row, int col, TextView before, flexgrid::CellView after) noexcept;
    void CellChanged(std::uint64_t structure, int row, int col, TextView before, TextView after) noexcept {
        CellChanged(structure, row, col, before, flexgrid::CellView(after.data(), after.size()));
    }
    // Neighbouring cells of a row, from column `col` on, are about to get other texts.
    void CellsChanged(std::uint64_t structure, int row, int col, const flexgrid::RowView& before,
                      std::span<const TextView> after);
    // `change` inserts rows before row `at`, and does nothing else to the grid's rows and columns. What it throws comes
    // out. It is not made when there is no memory to remember it.
    template <class Change>
    void InsertRows(int at, int count, Change change);
    // `change` removes rows from row `at` on.
    template <class Change>
    void RemoveRows(int at, int count, Change change);

    // ---- Undoing and redoing ---------------------------------------------------------------------------------------
    bool CanUndo() const { return Ready() && !done_.empty(); }
    bool CanRedo() const { return Ready() && !undone_.empty(); }
    // Takes the last step back, or does the last that was taken back again; the current cell goes to where it was, rows
    // are numbered anew, and the grid counts as changed. Returns what has happened to the grid by that; null when there
    // is nothing to do. Errors come out; nothing has changed then.
    Step Undo(ControlState& state) { return Move(done_, undone_, state); }
    Step Redo(ControlState& state) { return Move(undone_, done_, state); }
    // Begins anew. A group that is open leaves no step.
    void Clear() noexcept;

    // While it lives there is nothing to undo and redo, and nothing is recorded: for whoever tells hosts of changes,
    // whose handlers must not undo the change that they are being told of.
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
    // Lists, whose steps change places without any memory.
    using Steps = std::list<std::shared_ptr<EditStep>>;

    bool Ready() const { return depth_ == 0 && paused_ == 0 && version_ == grid_.StructureVersion(); }
    // False when the recording is off. Begins anew when the structure has changed.
    bool Follow();
    bool RowsHaveMoved(std::uint64_t before);
    void Begin();
    void End() noexcept;
    EditStep& Pending() { return *fresh_.front(); }
    Step Move(Steps& from, Steps& to, ControlState& state);
    void Push(Steps& stack, Steps& step) noexcept;

    flexgrid::Grid& grid_;
    Limits limits_;
    std::uint64_t version_;  // of the grid's structure, that all steps are about
    Steps done_;
    Steps undone_;
    Steps fresh_;                 // that of the group, made before anything is changed; empty before the first group
    std::size_t characters_ = 0;  // of both
    int depth_ = 0;               // of groups
    int paused_ = 0;
    bool broken_ = false;  // the group's rows have been meddled with, or it cannot be remembered
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
