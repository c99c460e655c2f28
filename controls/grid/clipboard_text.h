// Rectangles of cells as separated text: a separator between cells, a line end after a row. A cell that contains the
// separator, a line end or a quote is put into quotes, with its own quotes doubled. With tabs, this is the form in
// which spreadsheets exchange cells through the clipboard; with commas, that of CSV files.
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <span>
#include <vector>

#include "common/text.h"
#include "common/text_scan.h"

namespace qvx::grid {

// Appends a cell, in quotes where it needs them.
void AppendCell(Text& to, TextView cell, char16_t separator);

// Writes the clipboard's text, row by row. Every row ends with CR LF; a single cell does not, so that it can be pasted
// anywhere.
class ClipboardWriter {
  public:
    void AddCell(TextView text);
    void EndRow();
    // Returns the text; called once, after the last row.
    Text Take();

  private:
    Text text_;
    std::size_t cells_ = 0;
    bool rowBegun_ = false;
};

// The cells of such a text, from any program. Rows end with CR LF, CR or LF, and may differ in length; a line end at
// the very end adds no further row. An empty text is one empty cell. A quote is special only at the beginning of a
// cell, and only when its closing quote is the cell's last character: `5" pipe` and `"so" he said` are taken literally.
// The time is linear in the text.
class ClipboardCells {
  public:
    // The cells are views of the text, which must outlive them.
    explicit ClipboardCells(TextView text, char16_t separator = u'\t');
    ClipboardCells(const ClipboardCells&) = delete;
    ClipboardCells& operator=(const ClipboardCells&) = delete;

    std::size_t Rows() const { return starts_.size(); }
    // Returns the cells of a row, at least one; valid until the next call. Rows are parsed when they are needed, so
    // that a large text needs little additional memory.
    std::span<const TextView> Row(std::size_t row) const {
        TakeRow(starts_[row]);
        return cells_;
    }
    // Returns the row as it is in the text, if it has no quotes and tabs separate its cells.
    std::optional<TextView> PlainRow(std::size_t row) const;
    // Returns the part of the text before the row.
    TextView Before(std::size_t row) const { return text_.substr(0, starts_[row]); }
    // Returns the number of cells of the longest row.
    std::size_t Cols() const { return cols_; }

  private:
    std::size_t EndOfPlainRow(std::size_t at, std::size_t& cells) const;
    std::size_t TakeRow(std::size_t at) const;
    TextView TakeCell(std::size_t& at) const;
    // Takes a cell that begins with a quote; false when the quote is not special.
    bool TakeQuoted(std::size_t& at, TextView& cell) const;

    TextView text_;
    char16_t separator_;
    ScannedFor endsCell_;
    std::vector<std::size_t> starts_;  // of the rows
    std::size_t cols_ = 0;
    bool hasQuotes_ = false;               // in any row
    mutable std::vector<TextView> cells_;  // of the row that was read last
    mutable std::deque<Text> unquoted_;    // those of them that are not contiguous in the text
};

}  // namespace qvx::grid
