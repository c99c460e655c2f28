// The grid's menu on the screen, and its commands.
#include "controls/grid/context_menu.h"
#include "controls/grid/entry_grid_filter_window.h"
#include "controls/grid/entry_grid_finder_window.h"
#include "controls/grid/entry_grid_window.h"
#include "win/window_text.h"

namespace qvx::grid {
namespace {

struct MenuDestroyer {
    void operator()(HMENU menu) const { DestroyMenu(menu); }
};
using OwnedMenu = std::unique_ptr<std::remove_pointer_t<HMENU>, MenuDestroyer>;

// Shows the menu and returns the entry that is chosen; null for none.
const MenuEntry* ChooseFrom(const std::vector<MenuEntry>& entries, const std::vector<bool>& enabled, HWND window,
                            POINT at, bool rightToLeft) {
    const OwnedMenu menu(CreatePopupMenu());
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (entries[i].command == MenuCommand::separator) {
            AppendMenuW(menu.get(), MF_SEPARATOR, 0, nullptr);
        } else {
            AppendMenuW(menu.get(), MF_STRING | (enabled[i] ? MF_ENABLED : MF_GRAYED), i + 1, Wide(entries[i].caption));
        }
    }
    const UINT side = rightToLeft ? TPM_RIGHTALIGN | TPM_LAYOUTRTL : TPM_LEFTALIGN;
    const int chosen =
        TrackPopupMenu(menu.get(), TPM_RETURNCMD | TPM_RIGHTBUTTON | side, at.x, at.y, 0, window, nullptr);
    return chosen > 0 ? &entries[static_cast<std::size_t>(chosen) - 1] : nullptr;
}

}  // namespace

bool EntryGrid::MayChoose(MenuCommand command, int col) {
    const MenuFacts facts{CanUndo(), CanRedo(), IsClipboardFormatAvailable(CF_UNICODETEXT) != FALSE,
                          filterer_ && filterer_->Filters()};
    return grid::MayChoose(command, Model(), state_, col, facts);
}

// A click outside the selection moves the cursor there; one on a header leaves it where it is.
bool EntryGrid::ContextMenu(const flexgrid::Hit& cell, int x, int y) {
    if (!state_.contextMenu || !Model().Enabled()) return false;
    const auto keep = events_.KeepAlive();
    try {
        CommitOpenEdit();
        if (EditIsOpen()) return true;
        flexgrid::Grid& grid = Model();
        if (cell.OnCell() && !cell.OnFixed() && !grid.Selection().Contains(cell.row, cell.col))
            grid.MoveTo(cell.row, cell.col);
        const int col = cell.OnCell() ? cell.col : grid.Col();
        Text items = DefaultMenu(state_);
        bool cancel = false;
        events_.BeforeMenu(cell.OnCell() ? cell.row : grid.Row(), col, items, cancel);
        const std::vector<MenuEntry> entries = ReadMenu(items);
        if (cancel || entries.empty() || EditIsOpen() || !window_->Handle()) return true;
        std::vector<bool> enabled;
        for (const MenuEntry& entry : entries) enabled.push_back(MayChoose(entry.command, col));
        const MenuEntry* chosen = ChooseFrom(entries, enabled, window_->Handle(), {x, y}, grid.RightToLeft());
        if (chosen && window_->Handle() && MayChoose(chosen->command, col)) UseMenu(chosen->command, chosen->key, col);
    } catch (...) {
        const RunTimeError error = CurrentError();
        events_.ReportError(error.Number(), error.Description());
    }
    return true;
}

void EntryGrid::UseMenu(MenuCommand command, const Text& key, int col) {
    switch (command) {
        case MenuCommand::host:
            return events_.MenuCommandChosen(key, col);
        case MenuCommand::cut:
            return UseClipboardKey(GridKey::Cut);
        case MenuCommand::copy:
            return UseClipboardKey(GridKey::Copy);
        case MenuCommand::paste:
            return UseClipboardKey(GridKey::Paste);
        case MenuCommand::undo:
        case MenuCommand::redo:
            return StepInHistory(command == MenuCommand::undo);
        case MenuCommand::insertRow:
            return UseGridKey(GridKey::InsertRow, {});
        case MenuCommand::deleteRow:
            return DeleteSelectedRow();
        case MenuCommand::sortAscending:
        case MenuCommand::sortDescending:
            return SortByUser({{col, command == MenuCommand::sortDescending}});
        case MenuCommand::find:
            return Finding().Act(FindAction::Find);
        case MenuCommand::filter:
            return Filtering().FilterByValue(Model().Row(), col);
        case MenuCommand::showAll:
            return Filtering().ShowAllByUser();
        case MenuCommand::separator:
            return;
    }
}

}  // namespace qvx::grid
