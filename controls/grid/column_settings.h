// Editing of the lists that name columns by caption, for hosts that set one column at a time. What a list says of the
// other columns stays as it is, whatever the form of their items; columns with the same caption share what it says.
#pragma once

#include <vector>

#include "common/text.h"
#include "controls/grid/control_state.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

enum class ColumnSetting {
    required,
    skipped,
    invisible,
    inactive,
    list,
    listOnly,
    dataType,
    sign,
    footer,
    maxLength,
    last = maxLength
};

// How the items of a list are coded. A number above 0 is that of the codes that the list has.
namespace item_form {
constexpr int plain = 0;    // ";Qty;"
constexpr int number = -1;  // ";Qty-30;"
}  // namespace item_form

// Returns what a list says of a column: whether it has it (0 or 1), the first of the column's codes (-1 without any),
// or its number (0 without any).
int ListedValue(TextView list, TextView caption, int form);

// Returns the list that says this of a column. A changed item keeps its place, further items of the column are removed,
// and a new one comes after the last ";". Raises error 380 for a value out of range, and for a caption with ";", which
// no item can have.
Text WithListedValue(TextView list, TextView caption, int form, int value);

// Returns the list in which a setting is kept.
Text ControlState::*ListOf(ColumnSetting setting);

// Do the same for a column of a grid.
int SettingOf(const flexgrid::Grid& grid, const ControlState& state, int col, ColumnSetting setting);
Text WithSetting(const flexgrid::Grid& grid, const ControlState& state, int col, ColumnSetting setting, int value);

// Returns how many columns are frozen once this one is frozen or no longer is: freezing it freezes those before it, and
// releasing it releases those after it. Fixed columns are not frozen.
int FrozenColsWith(int fixedCols, int frozenCols, int col, bool frozen);

// What a ControlState says once a column has another caption.
using ChangedTexts = std::vector<std::pair<Text ControlState::*, Text>>;

// Returns the changes with which a column keeps its settings under another caption. A column whose caption is that of
// another one leaves that its settings; one that gets the caption of another one gets its settings as well. Raises
// error 380 for a caption with ";", and for one with "]" if BindFields or ColumnFormats has the column.
ChangedTexts RenamedColumn(const flexgrid::Grid& grid, const ControlState& state, int col, TextView caption);

// Returns the changes with which no list names a column any longer; none if another column has the same caption.
ChangedTexts ForgottenColumn(const flexgrid::Grid& grid, const ControlState& state, int col);

}  // namespace qvx::grid
