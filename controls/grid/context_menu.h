// The menu of a grid for data entry: a list of commands that the host may change before it is shown.
#pragma once

#include <vector>

#include "common/text.h"
#include "controls/grid/control_state.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

enum class MenuCommand {
    separator,
    host,  // a command of the host
    cut,
    copy,
    paste,
    undo,
    redo,
    insertRow,
    deleteRow,
    sortAscending,
    sortDescending,
    find,
    filter,
    showAll,
};

struct MenuEntry {
    MenuCommand command = MenuCommand::separator;
    Text key;      // by which the host knows the command
    Text caption;  // with its access key and shortcut
};

// The commands that the grid offers: ";cut;copy;…;", with "-" for a separator. Those of a filter belong to them only
// where the user can filter.
Text DefaultMenu(const ControlState& state);

// Reads such a list. An item "key=Caption" is a command of the host; an item "key=Caption" with the key of one of the
// grid's commands gives that another caption. Unknown keys without a caption are dropped, and so are separators with
// nothing before or after them.
std::vector<MenuEntry> ReadMenu(TextView items);

// What the grid itself cannot answer.
struct MenuFacts {
    bool canUndo = false;
    bool canRedo = false;
    bool clipboardHasText = false;
    bool filtered = false;  // there is a filter
};

// Whether a command makes sense now; `col` is the column that was clicked.
bool MayChoose(MenuCommand command, const flexgrid::Grid& grid, const ControlState& state, int col,
               const MenuFacts& facts);

}  // namespace qvx::grid
