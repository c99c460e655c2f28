// The filter of a grid: conditions for some of its columns. A row is shown when its cells meet all of them.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "common/text.h"
#include "controls/grid/control_state.h"
#include "controls/grid/filter_condition.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

// A condition as it is typed, for the column that has this key in ColIndex.
struct FilterItem {
    Text column;
    Text condition;
    friend bool operator==(const FilterItem&, const FilterItem&) = default;
};

// Reads a list, "[Name]oak*,[Qty]>10". Within the brackets, "]" is doubled; a comma of a condition is doubled too, but
// has to be only before "[" and another comma. Returns nullopt for a list of another form.
std::optional<std::vector<FilterItem>> ReadFilterItems(TextView list);
// Writes such a list.
Text FilterItemsText(std::span<const FilterItem> items);

// The conditions of a grid's user and host. Columns are known by their keys, so that a filter outlives columns that
// move; a condition for a column that does not exist is not applied.
class RowFilter {
  public:
    // The conditions that are in force.
    TextView ConditionOf(TextView column) const;
    // Replaces a condition; one of blanks is none.
    void SetCondition(TextView column, TextView condition);
    void Clear() noexcept { items_.clear(); }
    // Follows columns that had these keys and now have others.
    void FollowKeys(const std::vector<Text>& before, const std::vector<Text>& now);
    // Replaces all; false for a list of another form, for columns that the grid lacks, and for texts that are no
    // conditions, with nothing changed.
    bool Replace(const flexgrid::Grid& grid, const ControlState& state, const FilterHelp& help, TextView list);
    // Writes the conditions that can be read.
    Text List(const flexgrid::Grid& grid, const ControlState& state, const FilterHelp& help) const;
    bool Empty() const { return items_.empty(); }

    // Returns a mark for each row that does not meet the conditions; nothing while there are none.
    std::optional<std::vector<bool>> RowsToHide(const flexgrid::Grid& grid, const ControlState& state,
                                                const FilterHelp& help) const;

  private:
    std::vector<FilterItem> items_;
};

// Whether a text is a condition for the column; blanks are.
bool IsCondition(const flexgrid::Grid& grid, const ControlState& state, const FilterHelp& help, int col, TextView text);

// Returns the keys of all columns.
std::vector<Text> ColumnKeys(const flexgrid::Grid& grid);

}  // namespace qvx::grid
