#include "widgets/flexgrid/merge.h"

#include <algorithm>
#include <utility>

#include "widgets/flexgrid/grid.h"

namespace qvx::flexgrid {

namespace {

// Bonds between adjacent cells, by index in the lists.
class Bonds {
  public:
    Bonds(const Grid& grid, const std::vector<int>& rows, const std::vector<int>& cols)
        : rowCount_(rows.size()), colCount_(cols.size()), across_(rowCount_ * colCount_), down_(across_.size()) {
        const GridMerge mode = grid.MergeCells();
        const bool restrictRows = mode == GridMerge::restrictRows || mode == GridMerge::restrictBoth;
        const bool restrictCols = mode == GridMerge::restrictColumns || mode == GridMerge::restrictBoth;
        const auto joins = [](int a, int b, int fixed) { return (a < fixed) == (b < fixed); };
        const auto together = [&](int a, int b) {
            return joins(a, b, grid.FixedCols()) && joins(a, b, grid.StandingCols());
        };
        for (std::size_t r = 0; r < rowCount_; ++r) {
            const bool mergeRow = grid.MergeRow(rows[r]);
            const bool belowJoins = r + 1 < rowCount_ && joins(rows[r], rows[r + 1], grid.FixedRows());
            const bool aboveJoins = r > 0 && joins(rows[r - 1], rows[r], grid.FixedRows());
            for (std::size_t c = 0; c < colCount_; ++c) {
                const CellView cell = grid.Cell(rows[r], cols[c]);
                if (cell.Empty()) {
                    continue;
                }
                if (mergeRow && c + 1 < colCount_ && together(cols[c], cols[c + 1]) &&
                    cell == grid.Cell(rows[r], cols[c + 1])) {
                    across_[At(r, c)] = !restrictRows || !aboveJoins || Across(r - 1, c);
                }
                if (belowJoins && grid.MergeCol(cols[c]) && cell == grid.Cell(rows[r + 1], cols[c])) {
                    const bool leftJoins = c > 0 && together(cols[c - 1], cols[c]);
                    down_[At(r, c)] = !restrictCols || !leftJoins || Down(r, c - 1);
                }
            }
        }
    }
    std::size_t At(std::size_t r, std::size_t c) const { return r * colCount_ + c; }
    bool Across(std::size_t r, std::size_t c) const { return across_[At(r, c)]; }
    bool Down(std::size_t r, std::size_t c) const { return down_[At(r, c)]; }
    // Whether exactly the columns from c to lastCol are bonded across in row r.
    bool IsRun(std::size_t r, std::size_t c, std::size_t lastCol) const {
        if (c > 0 && Across(r, c - 1)) {
            return false;
        }
        for (; c < lastCol; ++c) {
            if (!Across(r, c)) {
                return false;
            }
        }
        return !Across(r, lastCol);
    }
    bool AllDown(std::size_t r, std::size_t c, std::size_t lastCol) const {
        for (; c <= lastCol; ++c) {
            if (!Down(r, c)) {
                return false;
            }
        }
        return true;
    }

  private:
    std::size_t rowCount_;
    std::size_t colCount_;
    std::vector<bool> across_;  // with the cell to the right
    std::vector<bool> down_;    // with the cell below
};

std::size_t IndexOf(const std::vector<int>& list, int value) {
    const auto found = std::lower_bound(list.begin(), list.end(), value);
    return found != list.end() && *found == value ? static_cast<std::size_t>(found - list.begin()) : list.size();
}

}  // namespace

MergeMap::MergeMap(const Grid& grid, std::vector<int> rows, std::vector<int> cols)
    : rows_(std::move(rows)), cols_(std::move(cols)) {
    if (grid.MergeCells() == GridMerge::never || rows_.empty() || cols_.empty()) {
        return;
    }
    const Bonds bonds(grid, rows_, cols_);
    ranges_.resize(rows_.size() * cols_.size());
    for (std::size_t r = 0; r < rows_.size(); ++r) {
        for (std::size_t c = 0; c < cols_.size(); ++c) {
            if (!ranges_[bonds.At(r, c)].Empty()) {
                continue;
            }
            // As far right as the row bonds, then down as long as the next row bonds across exactly the same columns.
            std::size_t right = c;
            while (bonds.Across(r, right)) {
                ++right;
            }
            std::size_t bottom = r;
            while (bonds.AllDown(bottom, c, right) && bonds.IsRun(bottom + 1, c, right)) {
                ++bottom;
            }
            for (std::size_t y = r; y <= bottom; ++y) {
                for (std::size_t x = c; x <= right; ++x) {
                    ranges_[bonds.At(y, x)] = {rows_[r], cols_[c], rows_[bottom], cols_[right]};
                }
            }
        }
    }
}

CellRange MergeMap::RangeOf(int row, int col) const {
    const std::size_t r = IndexOf(rows_, row);
    const std::size_t c = IndexOf(cols_, col);
    if (ranges_.empty() || r == rows_.size() || c == cols_.size()) {
        return {row, col, row, col};
    }
    return ranges_[r * cols_.size() + c];
}

}  // namespace qvx::flexgrid
