#include "controls/grid/edit_history.h"

#include <algorithm>
#include <utility>

#include "controls/grid/lifecycle.h"

namespace qvx::grid {

EditHistory::EditHistory(flexgrid::Grid& grid, const Limits& limits)
    : grid_(grid), limits_(limits), version_(grid.StructureVersion()) {}

void EditHistory::Clear() {
    done_.clear();
    undone_.clear();
    pending_ = {};
    characters_ = 0;
    version_ = grid_.StructureVersion();
}

// ---- Recording -----------------------------------------------------------------------------------------------------

bool EditHistory::Follow() {
    if (version_ != grid_.StructureVersion()) {
        Clear();
        broken_ = depth_ > 0;
    }
    return paused_ == 0 && !broken_;
}

// Whether the rows have moved once since then, by the change that is being recorded. When a listener has moved rows as
// well, nobody knows any more which is which.
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
        Follow();
        broken_ = false;
    }
    ++depth_;
}

void EditHistory::End() {
    Follow();
    if (--depth_ > 0) return;
    EditStep step = std::exchange(pending_, {});
    if (std::exchange(broken_, false) || step.Empty()) return;
    for (const Step& undone : undone_) characters_ -= undone->Characters();
    undone_.clear();
    Push(done_, std::make_shared<const EditStep>(std::move(step)));
}

void EditHistory::CellChanged(std::uint64_t structure, int row, int col, flexgrid::CellView before, TextView after) {
    const Group group(*this);
    if (!Follow() || structure != version_ || before == after) return;
    pending_.AddCell(row, col, before, after);
}

void EditHistory::CellsChanged(std::uint64_t structure, int row, int col, const flexgrid::RowView& before,
                               std::span<const TextView> after) {
    const Group group(*this);
    if (Follow() && structure == version_) pending_.AddCells(row, col, before, after);
}

void EditHistory::Push(std::deque<Step>& stack, Step step) {
    characters_ += step->Characters();
    stack.push_back(std::move(step));
    const auto tooMuch = [&] {
        const std::size_t steps = done_.size() + undone_.size();
        return steps > limits_.steps || (steps > 1 && characters_ > limits_.characters);
    };
    while (tooMuch()) {
        // The oldest; when none is left to be taken back, the one that would be done again last. Never the new one.
        const std::size_t fresh = &stack == &done_ ? 1 : 0;
        std::deque<Step>& oldest = done_.size() > fresh ? done_ : undone_;
        if (oldest.empty()) return;
        characters_ -= oldest.front()->Characters();
        oldest.pop_front();
    }
}

// ---- Undoing -------------------------------------------------------------------------------------------------------

EditHistory::Step EditHistory::Move(std::deque<Step>& from, std::deque<Step>& to, ControlState& state) {
    if (!Ready() || from.empty()) return nullptr;
    const Step step = std::move(from.back());
    from.pop_back();
    characters_ -= step->Characters();
    const Pause pause(*this);
    bool intact = true;
    const auto go = [&] {
        intact = grid_.StructureVersion() == ++version_;
        return intact;
    };
    Step made;
    try {
        made = std::make_shared<const EditStep>(step->Revert(grid_, go));
    } catch (...) {
        Clear();
        throw;
    }
    state.changed = true;
    if (intact)
        Push(to, made);
    else
        Clear();
    const EditStep::Place place = made->FirstPlace();
    if (place.row < 0) return made;
    if (made->RowsChanged()) RenumberFrom(grid_, state, std::max(place.row, 1));
    if (grid_.Rows() > 0 && grid_.Cols() > 0) {
        const int col = place.col >= 0 ? place.col : grid_.Col();
        grid_.MoveTo(std::min(place.row, grid_.Rows() - 1), std::min(col, grid_.Cols() - 1));
    }
    return made;
}

}  // namespace qvx::grid
