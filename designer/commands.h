// The commands of the designer's menus and keys.
#pragma once

#include <optional>
#include <vector>

#include "designer/document/placement.h"
#include "host/menu_model.h"

namespace qvx::host::designer {

enum class Command : unsigned {
    none = 0,
    newForm = firstMenuId,
    open,
    save,
    saveAs,
    run,
    close,
    undo,
    redo,
    cut,
    copy,
    paste,
    pasteArray,
    duplicate,
    remove,
    selectAll,
    tabOrder,
    properties,
    toolbox,
    menus,
    images,
    pages,
    alignLefts,
    alignCenters,
    alignRights,
    alignTops,
    alignMiddles,
    alignBottoms,
    alignToGrid,
    sameWidth,
    sameHeight,
    sameSize,
    spaceAcross,
    spaceDown,
    bringToFront,
    sendToBack,
    documentation,
    keys,
};

// What the commands apply to at present.
struct CommandState {
    std::size_t selected = 0;
    Text undo;  // the step that would be undone; empty for none
    Text redo;
    bool canPaste = false;
    bool hasPages = false;
    bool imageList = false;  // the primary is an image list
    bool tabOrder = false;   // the view is on
    friend bool operator==(const CommandState&, const CommandState&) = default;
};

bool Available(Command command, const CommandState& state);
// The menu bar, with identifiers of commands.
std::vector<MenuItem> DesignerMenus(const CommandState& state);
// The menu of a right click.
std::vector<MenuItem> ContextMenu(const CommandState& state);
// Whether a text field has its own use for the command's shortcut.
bool IsEditing(Command command);
// How a command of the menu Format arranges the controls; nothing for any other command.
std::optional<Arrangement> ArrangementOf(Command command);

}  // namespace qvx::host::designer
