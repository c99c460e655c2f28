#include "controls/grid/edit_history.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <utility>

#include "controls/grid/lifecycle.h"

namespace qvx::grid {

using flexgrid::Grid;

EditHistory::EditHistory(Grid& grid, const Limits& limits)
    : grid_(grid), limits_(limits), version_(grid.StructureVersion()) {}

void EditHistory::Clear() noexcept {
    done_.clear();
    undone_.clear();
    if (!fresh_.empty()) Pending() = {};
    characters_ = 0;
    version_ = grid_.StructureVersion();
    broken_ = depth_ > 0;
}

// ---- Recording -----------------------------------------------------------------------------------------------------

bool EditHistory::Follow() {
    if (version_ != grid_.StructureVersion()) Clear();
    return paused_ == 0 && !broken_;
}

// Whether the rows have moved exactly once since then, by the change that is being recorded. If a listener has moved
// rows as well, it is unknown which rows are which.
bool EditHistory::RowsHaveMoved(std::uint64_t before) {
    if (grid_.StructureVersion() == before + 1) {
        version_ = before + 1;
        return true;
    }
    Follow();
    return false;
}

void EditHistory::Begin() {
    if (depth_ == 0) {
        if (fresh_.empty()) fresh_.push_back(std::make_shared<EditStep>());
        Follow();
        broken_ = false;
    }
    ++depth_;
}

void EditHistory::End() noexcept {
    Follow();
    if (--depth_ > 0) return;
    if (std::exchange(broken_, false)) Pending() = {};
    if (Pending().Empty()) return;
    for (const auto& undone : undone_) characters_ -= undone->Characters();
    undone_.clear();
    Push(done_, fresh_);
}

EditHistory::WholeGroup::WholeGroup(EditHistory& history, Grid::AllOrNothing::Reach reach)
    : history_(history), group_(history), version_(history.version_), whole_(std::in_place, history.grid_, reach) {}

EditHistory::WholeGroup::~WholeGroup() {
    if (!whole_) return;
    whole_.reset();
    if (history_.grid_.StructureVersion() != version_) return;  // the changes could not be undone
    history_.version_ = version_;
    if (history_.depth_ == 1) history_.Pending() = {};  // an outer group is given up as well
}

void EditHistory::CellChanged(std::uint64_t structure, int row, int col, TextView before,
                              flexgrid::CellView after) noexcept {
    try {
        const Group group(*this);
        if (!Follow() || structure != version_ || after == before) return;
        Pending().AddCell(row, col, flexgrid::CellView(before.data(), before.size()), after);
    } catch (const std::bad_alloc&) {
        Clear();
    }
}

void EditHistory::CellsChanged(std::uint64_t structure, int row, int col, const flexgrid::RowView& before,
                               const flexgrid::RowView& after, int count) {
    const Group group(*this);
    if (Follow() && structure == version_) Pending().AddCells(row, col, before, after, count);
}

void EditHistory::OrderRows(int first, std::vector<std::uint32_t> rows, std::span<const flexgrid::SortMark> marks) {
    const Group group(*this);
    const bool records = Follow();
    const std::uint64_t before = grid_.StructureVersion();
    std::vector<flexgrid::SortMark> marksBefore = grid_.SortMarks();
    if (records) Pending().ReserveChange();
    grid_.OrderRows(first, rows, marks);
    if (records && RowsHaveMoved(before)) Pending().AddRowsOrdered(first, std::move(rows), std::move(marksBefore));
}

void EditHistory::MoveColumn(int from, int to) {
    const bool alone = depth_ == 0;
    const Group group(*this);
    const bool records = Follow() && alone;
    const std::uint64_t before = grid_.StructureVersion();
    if (records) Pending().ReserveChange();
    grid_.SetColPosition(from, to);
    if (records && RowsHaveMoved(before)) Pending().AddColumnMoved(from, to);
}

// Moves the single step of a list to the end of another.
void EditHistory::Push(Steps& stack, Steps& step) noexcept {
    characters_ += step.front()->Characters();
    stack.splice(stack.end(), step);
    const auto tooMuch = [&] {
        const std::size_t steps = done_.size() + undone_.size();
        return steps > limits_.steps || (steps > 1 && characters_ > limits_.characters);
    };
    while (tooMuch()) {
        // Drops the oldest undo step; when there is none left, the redo step that is furthest away. Never the new one.
        const std::size_t fresh = &stack == &done_ ? 1 : 0;
        Steps& oldest = done_.size() > fresh ? done_ : undone_;
        if (oldest.empty()) return;
        characters_ -= oldest.front()->Characters();
        oldest.pop_front();
    }
}

// ---- Undoing -------------------------------------------------------------------------------------------------------

EditHistory::Step EditHistory::Move(Steps& from, Steps& to, ControlState& state) {
    if (!Ready() || from.empty()) return nullptr;
    Steps moved;
    moved.splice(moved.end(), from, std::prev(from.end()));
    const Step step = moved.front();
    characters_ -= step->Characters();
    const Pause pause(*this);
    const std::uint64_t version = version_;
    bool intact = true;
    const auto go = [&] {
        intact = grid_.StructureVersion() == ++version_;
        return intact;
    };
    std::shared_ptr<EditStep> made;
    EditStep::Place place;
    try {
        std::optional<Grid::AllOrNothing> whole;
        // The move of a column is a single change, which happens or not; what follows it needs no memory.
        if (!step->MovedColumn())
            whole.emplace(grid_,
                          step->RowsChanged() ? Grid::AllOrNothing::Reach::all : Grid::AllOrNothing::Reach::texts);
        made = std::make_shared<EditStep>();
        *made = step->Revert(grid_, go);
        place = made->FirstPlace();
        if (made->RowsChanged()) RenumberFrom(grid_, state, std::max(place.row, 1));
        if (whole) whole->Commit();
    } catch (...) {
        version_ = version;
        Push(from, moved);
        throw;
    }
    state.changed = state.changed || !made->MovedColumn();
    if (intact) {
        moved.front() = made;
        Push(to, moved);
    } else {
        Clear();
    }
    if (place.row >= 0 && grid_.Rows() > 0 && grid_.Cols() > 0) {
        const int col = place.col >= 0 ? place.col : grid_.Col();
        try {
            grid_.MoveTo(std::min(place.row, grid_.Rows() - 1), std::min(col, grid_.Cols() - 1));
        } catch (const std::bad_alloc&) {
            // The step is undone, and moving the current cell is only a convenience.
        }
    }
    return made;
}

}  // namespace qvx::grid
