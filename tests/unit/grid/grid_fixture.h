// The common parts of the tests for the data-entry grid's rules.
#pragma once

#include <string>
#include <vector>

#include "common/text.h"
#include "controls/grid/list_match.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

// Returns a text for messages and comparisons that are printed; characters outside Latin-1 are "?".
inline std::string Narrow(TextView text) {
    std::string out;
    for (char16_t c : text) out.push_back(c < 0x100 ? static_cast<char>(c) : '?');
    return out;
}

// Returns the state of a list with these entries.
inline ListState ListOf(std::vector<Text> entries, int listIndex = -1, int topIndex = 0) {
    const int count = static_cast<int>(entries.size());
    return {count, [all = std::move(entries)](int index) { return all.at(static_cast<std::size_t>(index)); }, listIndex,
            topIndex};
}

// Fills the grid with one fixed row of captions, one fixed column, and data rows; the cells of each row are separated
// by tabs.
inline void Fill(flexgrid::Grid& grid, const std::vector<TextView>& rows) {
    int cols = 1;
    for (char16_t c : rows.front()) cols += c == u'\t' ? 1 : 0;
    grid.SetFixedRows(0);
    grid.SetFixedCols(0);
    grid.SetRows(static_cast<int>(rows.size()));
    grid.SetCols(cols);
    for (int row = 0; row < grid.Rows(); ++row) {
        TextView rest = rows[static_cast<std::size_t>(row)];
        for (int col = 0; col < cols; ++col) {
            const std::size_t tab = rest.find(u'\t');
            grid.SetTextMatrix(row, col, rest.substr(0, tab));
            rest = tab == TextView::npos ? TextView() : rest.substr(tab + 1);
        }
    }
    if (cols > 1) grid.SetFixedCols(1);
    if (grid.Rows() > 1) {
        grid.SetFixedRows(1);
        grid.MoveTo(1, grid.FixedCols());
    }
}

}  // namespace qvx::grid
