#include "designer/designer_keys.h"

#include "common/keys.h"

namespace qvx::host::designer {

std::optional<Pane> PaneAfterKey(int key, int shift, Pane focused) {
    constexpr int panes = 3;
    if (key != paneKey || (shift & ~keys::shiftMask) != 0) return std::nullopt;
    const int step = shift == 0 ? 1 : panes - 1;
    return static_cast<Pane>((static_cast<int>(focused) + step) % panes);
}

bool TakesShortcut(Command command, KeyTarget target) {
    // A text that is being typed has its own undo and clipboard.
    if (IsEditing(command)) return target == KeyTarget::form;
    // In the property list, the key opens the choices of a value.
    return command != Command::properties || target != KeyTarget::properties;
}

ToolboxAction ToolboxActionOf(int key) {
    return key == keys::enter    ? ToolboxAction::place
           : key == keys::escape ? ToolboxAction::disarm
                                 : ToolboxAction::none;
}

}  // namespace qvx::host::designer
