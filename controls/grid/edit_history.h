// What the user has done to a grid, so that it can be taken back and done again.
//
// What the host does itself is no part of it: texts it writes stay out, and when it moves rows or columns, lets them
// come or go or empties the grid, row and column numbers no longer mean what they meant, and the history begins anew.
// The grid's structure version tells, so that a host's calls cost nothing here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <span>

#include "controls/grid/control_state.h"
#include "controls/grid/edit_step.h"
#include "elements/flexgrid/grid.h"

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

    // A cell got another text, at a time when the grid's structure version was `structure`; nothing when the texts are
    // equal or the rows have moved since. The text of `before` may lie in the grid: call before it is written then.
    void CellChanged(std::uint64_t structure, int row, int col, flexgrid::CellView before, TextView after);
    void CellChanged(std::uint64_t structure, int row, int col, TextView before, TextView after) {
        CellChanged(structure, row, col, flexgrid::CellView(before.data(), before.size()), after);
    }
    // The same for neighbouring cells of a row, from column `col` on.
    void CellsChanged(std::uint64_t structure, int row, int col, const flexgrid::RowView& before,
                      std::span<const TextView> after);
    // `change` inserts rows before row `at`, and does nothing else to the grid's rows and columns. What it throws comes
    // out.
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
    // is nothing to do. Errors of the grid come out, and the history begins anew.
    Step Undo(ControlState& state) { return Move(done_, undone_, state); }
    Step Redo(ControlState& state) { return Move(undone_, done_, state); }
    void Clear();

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
    bool Ready() const { return depth_ == 0 && paused_ == 0 && version_ == grid_.StructureVersion(); }
    // False when the recording is off. Begins anew when the structure has changed.
    bool Follow();
    bool RowsHaveMoved(std::uint64_t before);
    void Begin();
    void End();
    Step Move(std::deque<Step>& from, std::deque<Step>& to, ControlState& state);
    void Push(std::deque<Step>& stack, Step step);

    flexgrid::Grid& grid_;
    Limits limits_;
    std::uint64_t version_;  // of the grid's structure, that all steps are about
    std::deque<Step> done_;
    std::deque<Step> undone_;
    std::size_t characters_ = 0;  // of both
    int depth_ = 0;               // of groups
    int paused_ = 0;
    bool broken_ = false;  // the group's rows have been meddled with
    EditStep pending_;     // of the group
};

template <class Change>
void EditHistory::InsertRows(int at, int count, Change change) {
    const Group group(*this);
    const bool records = Follow();
    const std::uint64_t before = grid_.StructureVersion();
    change();
    if (records && RowsHaveMoved(before)) pending_.AddRowsInserted(at, count);
}

template <class Change>
void EditHistory::RemoveRows(int at, int count, Change change) {
    const Group group(*this);
    const bool records = Follow();
    const std::uint64_t before = grid_.StructureVersion();
    KeptRows kept;
    if (records) kept = KeepRows(grid_, at, count);
    change();
    if (records && RowsHaveMoved(before)) pending_.AddRowsRemoved(at, std::move(kept));
}

}  // namespace qvx::grid
