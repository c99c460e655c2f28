// The common parts of the tests for the data-entry grid's rules.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "common/text.h"
#include "controls/grid/edit_history.h"
#include "controls/grid/list_match.h"
#include "tests/support/narrow.h"
#include "tests/unit/flexgrid/grid_texts.h"

namespace qvx::grid {

using test::Narrow;

// Returns the state of a list with these entries.
inline ListState ListOf(std::vector<Text> entries, int listIndex = -1, int topIndex = 0) {
    const int count = static_cast<int>(entries.size());
    return {count, [all = std::move(entries)](int index) { return all.at(static_cast<std::size_t>(index)); }, listIndex,
            topIndex};
}

// Fills the grid with one fixed row of captions, one fixed column, and data rows; the cells of each row are separated
// by tabs.
inline void Fill(flexgrid::Grid& grid, const std::vector<TextView>& rows) {
    Text block;
    for (const TextView row : rows) block.append(row).append(u"\r");
    const auto tabs = std::count(rows.front().begin(), rows.front().end(), u'\t');
    flexgrid::Load(grid, rows.size() > 1 ? 1 : 0, tabs > 0 ? 1 : 0, static_cast<int>(tabs) + 1, block);
    if (grid.Rows() > 1) grid.MoveTo(1, grid.FixedCols());
}

// A grid with the control's state and the history of what is done to it.
class EntryGridTest : public ::testing::Test {
  protected:
    std::string Current() const { return std::to_string(grid.Row()) + "," + std::to_string(grid.Col()); }

    flexgrid::Grid grid;
    ControlState state;
    EditHistory history{grid};
};

}  // namespace qvx::grid
