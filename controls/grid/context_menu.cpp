#include "controls/grid/context_menu.h"

#include <algorithm>
#include <array>

#include "common/text_compare.h"

namespace qvx::grid {
namespace {

struct KnownEntry {
    MenuCommand command;
    TextView key;
    TextView caption;
};

constexpr KnownEntry menuSeparator{MenuCommand::separator, u"-", u""};

// The last of them belong to a filter.
constexpr std::size_t filterEntries = 3;
constexpr std::array gridMenu{
    KnownEntry{MenuCommand::cut, u"cut", u"Cu&t\tCtrl+X"},
    KnownEntry{MenuCommand::copy, u"copy", u"&Copy\tCtrl+C"},
    KnownEntry{MenuCommand::paste, u"paste", u"&Paste\tCtrl+V"},
    menuSeparator,
    KnownEntry{MenuCommand::undo, u"undo", u"&Undo\tCtrl+Z"},
    KnownEntry{MenuCommand::redo, u"redo", u"&Redo\tCtrl+Y"},
    menuSeparator,
    KnownEntry{MenuCommand::insertRow, u"insertrow", u"&Insert Row\tIns"},
    KnownEntry{MenuCommand::deleteRow, u"deleterow", u"&Delete Row"},
    menuSeparator,
    KnownEntry{MenuCommand::sortAscending, u"sortascending", u"Sort &Ascending"},
    KnownEntry{MenuCommand::sortDescending, u"sortdescending", u"Sort D&escending"},
    menuSeparator,
    KnownEntry{MenuCommand::find, u"find", u"&Find...\tCtrl+F"},
    menuSeparator,
    KnownEntry{MenuCommand::filter, u"filter", u"Filter by This &Value"},
    KnownEntry{MenuCommand::showAll, u"showall", u"S&how All Rows"},
};

// Empty for an item that means nothing.
std::vector<MenuEntry> EntriesOf(TextView item) {
    const auto equals = item.find(u'=');
    const TextView key = item.substr(0, equals);
    const TextView caption = equals == TextView::npos ? TextView() : item.substr(equals + 1);
    const auto known =
        std::find_if(gridMenu.begin(), gridMenu.end(), [&](const KnownEntry& k) { return EqualNoCase(k.key, key); });
    if (known != gridMenu.end())
        return {{known->command, Text(known->key), Text(caption.empty() ? known->caption : caption)}};
    if (key.empty() || caption.empty()) return {};
    return {{MenuCommand::host, Text(key), Text(caption)}};
}

}  // namespace

Text DefaultMenu(const ControlState& state) {
    Text items = u";";
    const std::size_t count = gridMenu.size() - (state.filterRow ? 0 : filterEntries);
    for (std::size_t i = 0; i < count; ++i) items.append(gridMenu[i].key).append(u";");
    return items;
}

[[gnu::cold]] std::vector<MenuEntry> ReadMenu(TextView items) {
    std::vector<MenuEntry> menu;
    while (!items.empty()) {
        const TextView item = items.substr(0, items.find(u';'));
        items.remove_prefix(std::min(items.size(), item.size() + 1));
        for (MenuEntry& entry : EntriesOf(item)) {
            const bool separates = entry.command == MenuCommand::separator;
            if (!separates || (!menu.empty() && menu.back().command != MenuCommand::separator))
                menu.push_back(std::move(entry));
        }
    }
    if (!menu.empty() && menu.back().command == MenuCommand::separator) menu.pop_back();
    return menu;
}

bool MayChoose(MenuCommand command, const flexgrid::Grid& grid, const ControlState& state, int col,
               const MenuFacts& facts) {
    const bool onRow = grid.Row() >= grid.FixedRows() && grid.Row() < grid.Rows() && !grid.RowFiltered(grid.Row());
    switch (command) {
        case MenuCommand::cut:
        case MenuCommand::copy:
            return !grid.Selection().Empty();
        case MenuCommand::paste:
            return onRow && facts.clipboardHasText;
        case MenuCommand::undo:
            return facts.canUndo;
        case MenuCommand::redo:
            return facts.canRedo;
        case MenuCommand::insertRow:
        case MenuCommand::deleteRow:
            return onRow;
        case MenuCommand::sortAscending:
        case MenuCommand::sortDescending:
            return col >= grid.FixedCols() && col < grid.Cols();
        case MenuCommand::find:
            return state.findBar;
        case MenuCommand::filter:
            return onRow && col >= grid.FixedCols() && col < grid.Cols();
        case MenuCommand::showAll:
            return facts.filtered;
        case MenuCommand::host:
        case MenuCommand::separator:
            break;
    }
    return true;
}

}  // namespace qvx::grid
