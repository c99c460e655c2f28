#include "controls/grid/replace_cells.h"

namespace qvx::grid {

[[gnu::cold]] ReplacedRows::ReplacedRows(const flexgrid::Grid& grid, const ControlState& state,
                                         const CellSearch& search, TextView with, std::optional<CellPlace> only)
    : grid_(grid), state_(state), search_(search), with_(with) {
    if (search.Empty() || grid.Cols() == 0) return;
    target_ = {grid.FixedRows(), 0, grid.Rows() - 1, grid.Cols() - 1};
    if (only) target_ = {only->row, only->col, only->row, only->col};
    structure_ = grid.StructureVersion() - 1;
}

// Handlers of events may change the columns.
[[gnu::cold]] void ReplacedRows::FollowColumns() {
    if (structure_ == grid_.StructureVersion()) return;
    structure_ = grid_.StructureVersion();
    columns_ = search_.Columns();
    std::erase_if(columns_, [&](int col) { return col < target_.left || col > target_.right; });
    maxLengths_.assign(static_cast<std::size_t>(grid_.Cols()), 0);
    for (const int col : columns_) maxLengths_[static_cast<std::size_t>(col)] = RulesOf(grid_, state_, col).maxLength;
}

[[gnu::cold]] std::span<const TextView> ReplacedRows::TextsOf(int row) {
    CountLastRow();
    FollowColumns();
    lastRow_ = row;
    search_.ForEachHit(row, row, columns_, [&](int, int col) {
        if (hitCount_ == hits_.size()) hits_.emplace_back();
        Hit& hit = hits_[hitCount_];
        hit.col = col;
        hit.before.clear();
        grid_.Cell(row, col).AppendTo(hit.before);
        hit.after = search_.Options().wholeCell ? Text(with_) : search_.Pattern().Replaced(hit.before, with_);
        if (hit.after == hit.before) return;
        ++wanted_;
        // A longer text would be cut, and the rest of the cell be lost.
        const auto most = static_cast<std::size_t>(maxLengths_[static_cast<std::size_t>(col)]);
        if (most == 0 || hit.after.size() <= most) ++hitCount_;
    });
    if (hitCount_ == 0) return {};
    texts_.assign(static_cast<std::size_t>(hits_[hitCount_ - 1].col - target_.left) + 1, keepsCell);
    for (std::size_t i = 0; i < hitCount_; ++i)
        texts_[static_cast<std::size_t>(hits_[i].col - target_.left)] = hits_[i].after;
    return texts_;
}

// A cell that a handler has removed since had got its text before.
void ReplacedRows::CountLastRow() {
    for (std::size_t i = 0; i < hitCount_; ++i) {
        const bool exists = lastRow_ < grid_.Rows() && hits_[i].col < grid_.Cols();
        if (!exists || !(grid_.Cell(lastRow_, hits_[i].col) == TextView(hits_[i].before))) ++replaced_;
    }
    hitCount_ = 0;
}

Replacements ReplacedRows::Done() {
    CountLastRow();
    return {replaced_, wanted_ - replaced_};
}

}  // namespace qvx::grid
