// A search in the cells of a grid: which cells are hits, which one is next, and how many there are. Only the cells that
// the user can reach and see are searched: neither fixed nor hidden ones. Hits are in the order of reading.
//
// Hits are counted in blocks of rows, so that counting can be interrupted, and a cell that changes costs its block
// only.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "common/text.h"
#include "controls/grid/cell_place.h"
#include "controls/grid/search_pattern.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

class CellSearch {
  public:
    // The grid must outlive this object.
    explicit CellSearch(const flexgrid::Grid& grid) : grid_(grid) {}

    // Begins another search; an empty text finds nothing.
    void Look(TextView text, const SearchOptions& options);
    bool Empty() const { return pattern_.Empty(); }
    const SearchPattern& Pattern() const { return pattern_; }
    const SearchOptions& Options() const { return options_; }

    bool IsHit(int row, int col) const;
    // Returns the columns that are searched.
    std::vector<int> Columns() const;
    // Calls visit(row, col) for each hit in the rows first to last and in these columns.
    void ForEachHit(int first, int last, std::span<const int> columns,
                    const std::function<void(int row, int col)>& visit) const;

    struct NextHit {
        std::optional<CellPlace> place;
        bool known = true;  // false: rows that have not been counted come first
    };
    // Returns the hit that follows a cell or, backwards, precedes it, and after the last one the first one. `ownFirst`
    // makes the cell itself the first candidate instead of the last one. With `countedOnly`, only counted rows are
    // looked at, which takes no time.
    NextHit Next(CellPlace from, bool forward, bool ownFirst = false, bool countedOnly = false) const;

    // ---- Counting --------------------------------------------------------------------------------------------------
    // Forgets what has been counted, and counts anew. Counting begins with the block of that row.
    void StartCounting(int row);
    // Forgets it too; has to be called when rows or columns move, appear or disappear.
    void StopCounting() noexcept;
    // Takes changed texts into account.
    void RowsChanged(int first, int last) noexcept;
    // Counts further blocks as long as goOn() is true, but at least one. Returns whether all have been counted.
    template <class GoOn>
    bool Count(GoOn goOn);
    bool Counted() const { return uncounted_ == 0; }
    // The number of hits in what has been counted.
    std::int64_t Total() const { return total_; }
    // Returns the place of a hit among all of them, from 1; 0 for a cell that is none, or as long as it is not known.
    std::int64_t NumberOf(CellPlace cell) const;

  private:
    static constexpr int blockRows = 1024;
    static constexpr int unknown = -1;

    int LastOfBlock(int row) const { return std::min(row | (blockRows - 1), grid_.Rows() - 1); }
    int CountIn(int row) const { return BlockOf(row) < blocks_.size() ? blocks_[BlockOf(row)] : unknown; }
    static std::size_t BlockOf(int row) { return static_cast<std::size_t>(row / blockRows); }
    void CountBlock(std::size_t block);

    const flexgrid::Grid& grid_;
    SearchPattern pattern_;
    SearchOptions options_;
    std::vector<int> blocks_;   // the number of hits in each, or `unknown`; empty while nothing is counted
    std::vector<int> columns_;  // that are being counted
    std::size_t nextBlock_ = 0;
    std::size_t uncounted_ = 0;  // blocks
    std::int64_t total_ = 0;
};

template <class GoOn>
bool CellSearch::Count(GoOn goOn) {
    while (uncounted_ > 0) {
        while (blocks_[nextBlock_] != unknown) nextBlock_ = (nextBlock_ + 1) % blocks_.size();
        CountBlock(nextBlock_);
        if (!goOn()) break;
    }
    return Counted();
}

}  // namespace qvx::grid
