// Rectangles of cells as tab-separated text, the form in which spreadsheets exchange them: a tab between cells, a line
// end behind a row. A cell that holds a tab, a line end or a quote is put into quotes, its own quotes doubled.
#pragma once

#include <cstddef>
#include <deque>
#include <span>
#include <vector>

#include "common/text.h"

namespace qvx::grid {

// Writes such a text, row by row. Every row ends with CR LF; a single cell does not, so that it can go anywhere.
class ClipboardWriter {
  public:
    void AddCell(TextView text);
    void EndRow();
    // Once, behind the last row.
    Text Take();

  private:
    Text text_;
    std::size_t cells_ = 0;
    bool rowBegun_ = false;
};

// The cells of such a text, whatever program it comes from. Rows end with CR LF, CR or LF, and may differ in length; a
// line end at the very end gives no further row. An empty text is one empty cell. A quote has its meaning only at the
// beginning of a cell, and only when its closing one is the cell's last character: `5" pipe` and `"so" he said` are
// taken as they are. Linear in the text.
class ClipboardCells {
  public:
    // The cells are views: the text must live as long.
    explicit ClipboardCells(TextView text);
    ClipboardCells(const ClipboardCells&) = delete;
    ClipboardCells& operator=(const ClipboardCells&) = delete;

    std::size_t Rows() const { return starts_.size(); }
    // At least one cell. Good until another row is asked for: rows are taken apart when they are needed, so that a
    // large text takes little more memory than it has already.
    std::span<const TextView> Row(std::size_t row) const {
        TakeRow(starts_[row]);
        return cells_;
    }
    // Of the longest row.
    std::size_t Cols() const { return cols_; }

  private:
    std::size_t TakeRow(std::size_t at) const;
    TextView TakeCell(std::size_t& at) const;
    // For a cell that begins with a quote; false when that has no meaning.
    bool TakeQuoted(std::size_t& at, TextView& cell) const;

    TextView text_;
    std::vector<std::size_t> starts_;  // of the rows
    std::size_t cols_ = 0;
    mutable std::vector<TextView> cells_;  // of the row asked for last
    mutable std::deque<Text> unquoted_;    // what the text does not hold of them in one piece
};

}  // namespace qvx::grid
