// The menus of a form as a list that can be edited: one line for each item, indented by its level.
#pragma once

#include <optional>
#include <vector>

#include "common/text.h"
#include "host/form_file.h"

namespace qvx::host::designer {

struct MenuLine {
    int level = 0;
    Text caption;  // "-" is a dividing line
    Text name;
    int index = -1;
    Text shortcut;  // as the file has it: ^S, {F5}
    bool checked = false;
    bool enabled = true;
    bool visible = true;
    // The position among the lines that were read; nothing for a new line.
    std::optional<std::size_t> origin;
    friend bool operator==(const MenuLine&, const MenuLine&) = default;
};

constexpr int deepestMenu = 5;  // below the bar

std::vector<MenuLine> ReadMenuLines(const Block& form);

// Edits of one line. All keep the list a tree: no line is more than one level below the one before. The lines below an
// item move with it.
void InsertMenuLine(std::vector<MenuLine>& lines, std::size_t at, MenuLine line);
void RemoveMenuLine(std::vector<MenuLine>& lines, std::size_t at);
// By one level inwards or outwards; false where that is impossible.
bool IndentMenuLine(std::vector<MenuLine>& lines, std::size_t at, bool inwards);
// Before or after the neighbour of the same level. Returns where the line is now.
std::size_t MoveMenuLine(std::vector<MenuLine>& lines, std::size_t at, bool up);
// A name that is free: "mnuItem1" and so on.
Text FreshMenuName(const std::vector<MenuLine>& lines, const Block& form);

// The first line that cannot be stored, and why.
struct MenuFault {
    std::size_t line = 0;
    Text sentence;
};
std::optional<MenuFault> CheckMenuLines(const std::vector<MenuLine>& lines, const Block& form);

// Writes lines that have been checked into the form. What has not changed stays byte for byte.
void WriteMenuLines(Block& form, const std::vector<MenuLine>& lines);

// The shortcuts that a menu can have, as the file writes them and as they are shown; the first is none.
struct ShortcutChoice {
    Text source;
    Text shown;
};
const std::vector<ShortcutChoice>& ShortcutChoices();

}  // namespace qvx::host::designer
