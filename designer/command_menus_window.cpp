#include "designer/command_menus_window.h"

#include <algorithm>

#include "com/wide_text.h"
#include "host/sited_control.h"

namespace qvx::host::designer {

CommandState CommandMenus::State() const {
    CommandState state;
    const Document& form = session_.Form();
    state.selected = session_.Selected().All().size();
    state.undo = form.UndoName();
    state.redo = form.RedoName();
    state.canPaste = IsClipboardFormatAvailable(CF_UNICODETEXT) != FALSE;
    state.tabOrder = interaction_.ordersTabs;
    if (const ObjectId* primary = session_.Selected().Primary()) {
        const auto* sited = dynamic_cast<SitedControl*>(session_.Find(*primary));
        state.hasPages = sited && !sited->Pages().empty();
        const Block* block = form.Find(*primary);
        state.imageList = block && SameName(block->className, u"ImageList");
    }
    return state;
}

void CommandMenus::Update() {
    CommandState state = State();
    // No command depends on how many more than three are selected.
    state.selected = std::min<std::size_t>(state.selected, 3);
    // A bar that is made anew flickers.
    if (shown_ == state && GetMenu(environment_.window)) return;
    bar_.Show(environment_.window, DesignerMenus(state));
    shown_ = std::move(state);
}

std::optional<Command> CommandMenus::CommandOf(Shortcut keys) const {
    const MenuItem* item = bar_.FindShortcut(keys);
    return item ? std::optional(static_cast<Command>(item->id)) : std::nullopt;
}

std::optional<Command> CommandMenus::Choose(POINT at) const {
    const HMENU menu = CreatePopupMenu();
    for (const MenuItem& item : ContextMenu(State())) {
        if (item.caption == u"-") {
            AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
            continue;
        }
        Text caption = item.caption;
        if (const Text keys = ShortcutText(ParseShortcut(item.shortcut)); !keys.empty()) caption += u"\t" + keys;
        AppendMenuW(menu, MF_STRING | (item.enabled ? MF_ENABLED : MF_GRAYED) | (item.checked ? MF_CHECKED : 0u),
                    item.id, Wide(caption));
    }
    const auto chosen =
        TrackPopupMenu(menu, TPM_RETURNCMD | TPM_RIGHTBUTTON, at.x, at.y, 0, environment_.window, nullptr);
    DestroyMenu(menu);
    return chosen ? std::optional(static_cast<Command>(chosen)) : std::nullopt;
}

}  // namespace qvx::host::designer
