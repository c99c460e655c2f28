// How the cells of a grid are divided into pages of paper.
#pragma once

#include <vector>

#include "widgets/flexgrid/view.h"

namespace qvx::grid {

// Returns the first item of each page along an axis whose extent is the room on a page; at least one. The fixed items
// are repeated on every page. An item that is larger than a page is alone on it and is cut.
std::vector<int> PageStarts(const flexgrid::Axis& axis);

// Pages with the same columns follow one another. A page is computed when it is needed, in O(log rows), so that only
// the first row of each is kept.
class PageLayout {
  public:
    // `paper` is the room between the margins in the grid's pixels; the lines above and below the cells take `lines` of
    // its height. To fit all columns on a page, everything is drawn smaller, down to 40 %.
    PageLayout(const flexgrid::Grid& grid, Size paper, int lines, bool fitToWidth);

    int Count() const { return static_cast<int>(rows_.size() * columns_.size()); }
    // The size at which pages are drawn, 40 to 100 %.
    int Percent() const { return percent_; }
    // Returns the room between the margins in the pixels of a grid that is drawn at that size.
    Size Paper() const { return paper_; }
    // Returns what the grid shows on a page, counted from 0.
    flexgrid::View PageAt(const flexgrid::Grid& grid, int index) const;
    // Whether a page has the last rows of its columns.
    bool EndsRows(int index) const {
        return index % static_cast<int>(rows_.size()) + 1 == static_cast<int>(rows_.size());
    }

  private:
    int percent_ = 100;
    Size paper_;
    int lines_;
    std::vector<int> rows_;
    std::vector<int> columns_;
};

}  // namespace qvx::grid
