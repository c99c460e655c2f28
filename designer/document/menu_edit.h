// The menus of a form as a list that can be edited: one line an item, indented as deep as it stands.
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
    // Which of the lines that were read it is; none for a new one.
    std::optional<std::size_t> origin;
    friend bool operator==(const MenuLine&, const MenuLine&) = default;
};

constexpr int deepestMenu = 5;  // below the bar

std::vector<MenuLine> ReadMenuLines(const Block& form);

// Edits of one line. All keep the list a tree: no line stands more than one level below the one before. What stands
// below a line moves with it.
void InsertMenuLine(std::vector<MenuLine>& lines, std::size_t at, MenuLine line);
void RemoveMenuLine(std::vector<MenuLine>& lines, std::size_t at);
// By one level inwards or outwards; false where that cannot be.
bool IndentMenuLine(std::vector<MenuLine>& lines, std::size_t at, bool inwards);
// Before the neighbour of the same level, or behind it. Returns where the line is now.
std::size_t MoveMenuLine(std::vector<MenuLine>& lines, std::size_t at, bool up);
// "mnuItem1" and so on.
Text FreshMenuName(const std::vector<MenuLine>& lines, const Block& form);

// What is wrong with the first line that cannot be stored, and which.
struct MenuFault {
    std::size_t line = 0;
    Text sentence;
};
std::optional<MenuFault> CheckMenuLines(const std::vector<MenuLine>& lines, const Block& form);

// Writes the lines into the form: what has not changed stays byte for byte. They have been checked.
void WriteMenuLines(Block& form, const std::vector<MenuLine>& lines);

// The shortcuts that a menu can have, in the file's form and as they are shown; the first is none.
struct ShortcutChoice {
    Text source;
    Text shown;
};
const std::vector<ShortcutChoice>& ShortcutChoices();

}  // namespace qvx::host::designer
