// Sorting the data rows by columns: numbers and dates by their values where ColumnsDataType says so, texts in the
// user's order. Blank cells, and dates that cannot be read, are last in both directions. Equal rows keep their order.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "common/dates.h"
#include "common/text.h"
#include "controls/grid/control_state.h"
#include "controls/grid/edit_history.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

// The columns to sort by, the most important first, each of them once.
using SortColumns = std::vector<flexgrid::SortMark>;

// What sorting needs from the system.
struct SortHelp {
    // Appends the key of a text: the bytes of two keys compare as their texts sort for the user.
    std::function<void(TextView text, std::string& key)> appendKey;
    DateSettings dates;
    // Called every few milliseconds; false ends the sort and leaves the rows as they are.
    std::function<bool()> goOn;
};

// Reads a coded list, ";Qty-0;Name-1;": 0 for ascending and 1 for descending. A column that is named twice counts where
// it is first. Returns nullopt for a list of another form and for a caption that no column has.
std::optional<SortColumns> ReadSortColumns(const flexgrid::Grid& grid, TextView list);

// Writes such a list; "" for no columns.
Text SortColumnsText(const flexgrid::Grid& grid, const SortColumns& columns);

// Returns the columns to sort by after a click on a header: that column alone, or with `add` after those before. The
// direction of a column that the rows are sorted by already is reversed.
SortColumns ClickedSortColumns(const flexgrid::Grid& grid, int col, bool add);

// Sorts the rows that are not fixed, numbers them again, and marks the columns, as one step of the history. Returns
// false if that was ended. Nothing has changed then, or when memory runs out.
bool SortRows(flexgrid::Grid& grid, const ControlState& state, EditHistory& history, const SortColumns& columns,
              const SortHelp& help);

}  // namespace qvx::grid
