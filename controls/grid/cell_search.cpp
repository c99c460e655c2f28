#include "controls/grid/cell_search.h"

#include <algorithm>
#include <utility>

namespace qvx::grid {

[[gnu::cold]] void CellSearch::Look(TextView text, const SearchOptions& options) {
    SearchPattern pattern(text, options);
    pattern_ = std::move(pattern);
    options_ = options;
    StopCounting();
}

bool CellSearch::IsHit(int row, int col) const {
    if (pattern_.Empty() || row < grid_.FixedRows() || row >= grid_.Rows()) return false;
    if (col < grid_.FixedCols() || col >= grid_.Cols() || grid_.ColWidth(col) == 0) return false;
    if (options_.column != SearchOptions::allColumns && options_.column != col) return false;
    return pattern_.Matches(grid_.Cell(row, col)) && grid_.RowPixels(row) != 0;
}

[[gnu::cold]] std::vector<int> CellSearch::Columns() const {
    std::vector<int> columns;
    for (int col = grid_.FixedCols(); col < grid_.Cols(); ++col) {
        const bool wanted = options_.column == SearchOptions::allColumns || options_.column == col;
        if (wanted && grid_.ColWidth(col) != 0) columns.push_back(col);
    }
    return columns;
}

void CellSearch::ForEachHit(int first, int last, std::span<const int> columns,
                            const std::function<void(int row, int col)>& visit) const {
    first = std::max(first, grid_.FixedRows());
    if (pattern_.Empty() || columns.empty()) return;
    grid_.ForEachRow(first, last, [&](int row, const flexgrid::RowView& cells) {
        if (!pattern_.MayMatchIn(cells)) return;
        bool shown = false;
        for (const int col : columns) {
            if (!pattern_.Matches(cells[col])) continue;
            if (!shown && grid_.RowPixels(row) == 0) return;
            shown = true;
            visit(row, col);
        }
    });
}

[[gnu::cold]] CellSearch::NextHit CellSearch::Next(CellPlace from, bool forward, bool ownFirst,
                                                   bool countedOnly) const {
    const int top = grid_.FixedRows();
    const int bottom = grid_.Rows() - 1;
    if (pattern_.Empty() || bottom < top) return {};
    from.row = std::clamp(from.row, top, bottom);
    const std::vector<int> columns = Columns();
    std::optional<CellPlace> found;
    const auto isBeyond = [&](CellPlace place) { return place == from ? ownFirst : (from < place) == forward; };
    // Looks through one block, in which the first hit counts, or backwards the last one. Returns false where it cannot.
    const auto look = [&](int row, bool wrapped) {
        const int count = CountIn(row);
        if (count == 0) return true;
        if (countedOnly && count == unknown) return false;
        ForEachHit(row & ~(blockRows - 1), LastOfBlock(row), columns, [&](int hitRow, int col) {
            const CellPlace place{hitRow, col};
            if ((!forward || !found) && (wrapped || isBeyond(place))) found = place;
        });
        return true;
    };
    for (const bool wrapped : {false, true}) {
        int row = wrapped ? (forward ? top : bottom) : from.row;
        const int end = wrapped ? from.row : (forward ? bottom : top);
        // After wrapping, the block of the cell itself is the last one.
        while (forward ? row <= end : row >= end) {
            if (!look(row, wrapped)) return {std::nullopt, false};
            if (found) return {found};
            row = forward ? (row | (blockRows - 1)) + 1 : (row & ~(blockRows - 1)) - 1;
        }
    }
    return {};
}

// ---- Counting ------------------------------------------------------------------------------------------------------

[[gnu::cold]] void CellSearch::StartCounting(int row) {
    columns_ = Columns();
    const std::size_t blocks = pattern_.Empty() || columns_.empty() ? 0 : BlockOf(grid_.Rows() + blockRows - 1);
    blocks_.assign(blocks, unknown);
    uncounted_ = blocks;
    total_ = 0;
    nextBlock_ = blocks > 0 ? std::min(BlockOf(std::max(row, 0)), blocks - 1) : 0;
}

void CellSearch::StopCounting() noexcept {
    blocks_.clear();
    uncounted_ = 0;
    total_ = 0;
}

void CellSearch::RowsChanged(int first, int last) noexcept {
    for (std::size_t block = BlockOf(first); block <= BlockOf(last) && block < blocks_.size(); ++block) {
        if (blocks_[block] == unknown) continue;
        total_ -= blocks_[block];
        blocks_[block] = unknown;
        ++uncounted_;
    }
}

void CellSearch::CountBlock(std::size_t block) {
    const int first = static_cast<int>(block) * blockRows;
    int count = 0;
    ForEachHit(first, LastOfBlock(first), columns_, [&](int, int) { ++count; });
    blocks_[block] = count;
    total_ += count;
    --uncounted_;
}

[[gnu::cold]] std::int64_t CellSearch::NumberOf(CellPlace cell) const {
    if (BlockOf(cell.row) >= blocks_.size() || !IsHit(cell.row, cell.col)) return 0;
    std::int64_t number = 0;
    for (std::size_t block = 0; block < BlockOf(cell.row); ++block) {
        if (blocks_[block] == unknown) return 0;
        number += blocks_[block];
    }
    ForEachHit(cell.row & ~(blockRows - 1), cell.row, columns_, [&](int row, int col) {
        if (!(cell < CellPlace{row, col})) ++number;
    });
    return number;
}

}  // namespace qvx::grid
