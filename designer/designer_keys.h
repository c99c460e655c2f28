// What keys mean to the designer as a whole, and to its toolbox. Keys of the form: canvas/canvas_keys.h.
#pragma once

#include <optional>

#include "designer/commands.h"

namespace qvx::host::designer {

constexpr int paneKey = 117;  // F6
// In the order in which F6 visits them.
enum class Pane { canvas, properties, toolbox };

// Where F6 and Shift+F6 lead; nothing for any other key.
std::optional<Pane> PaneAfterKey(int key, int shift, Pane focused);

// Whether the shortcut of a command is the designer's, or is left to the window that has the focus: the form itself, a
// part of the property list, or another one.
enum class KeyTarget { form, properties, other };
bool TakesShortcut(Command command, KeyTarget target);

enum class ToolboxAction { none, place, disarm };
// In the list of tools.
ToolboxAction ToolboxActionOf(int key);

}  // namespace qvx::host::designer
