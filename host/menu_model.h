// The menu bar of a form, as its nested "Begin Menu" blocks describe it.
#pragma once

#include <functional>
#include <vector>

#include "common/text.h"
#include "host/form_file.h"

namespace qvx::host {

struct MenuItem {
    Text name;
    int index = -1;  // in the array of its name; -1 for a menu that is no element of one
    Text caption;    // "-" is a dividing line
    bool enabled = true;
    bool visible = true;
    bool checked = false;
    Text shortcut;  // as the file has it: ^S, +^S, {F5}, ^{F4}, {DEL}
    unsigned id = 0;
    std::vector<MenuItem> items;
};

constexpr unsigned firstMenuId = 100;

// The menus among the objects of `form`; commands get identifiers from `firstMenuId` up in the order of the file.
std::vector<MenuItem> ReadMenus(const Block& form);

// A keyboard shortcut: a virtual key and the shift bits of common/keys.h.
struct Shortcut {
    int key = 0;
    int shift = 0;
    friend bool operator==(const Shortcut&, const Shortcut&) = default;
};

// Key 0 for a text that is no shortcut.
Shortcut ParseShortcut(TextView text);
// As a menu shows it: "Ctrl+Shift+F5"; empty for key 0.
Text ShortcutText(Shortcut shortcut);

// The item of that identifier or name, at any depth; nullptr when there is none.
MenuItem* FindMenuItem(std::vector<MenuItem>& items, const std::function<bool(const MenuItem&)>& matches);

// The item whose shortcut these keys are. Null when there is none, or when it or a menu around it is disabled.
const MenuItem* FindShortcut(const std::vector<MenuItem>& items, Shortcut pressed);

// All items, each menu before what is in it.
std::vector<const MenuItem*> AllMenuItems(const std::vector<MenuItem>& items);

}  // namespace qvx::host
