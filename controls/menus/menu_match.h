// Matches a form's menu objects with the items of its menus, and defines the keys under which pictures are stored for
// them.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "common/text.h"

namespace qvx::menus {

// Returns a menu's key in an image list: its name, and for an element of a control array the index in parentheses.
Text PictureKey(TextView name, std::optional<std::int32_t> index);
// Returns the key of a copied picture: the number of its menu object, from 1, and "_".
Text NumberKey(int number);

// A menu object, in the order of the form's controls: each menu comes before its contents.
struct MenuObject {
    Text caption;  // "-" is a separator
    bool visible = true;
};

// An item of a menu, in the order of the menus: each item comes before the items that it opens.
struct MenuEntry {
    Text text;  // with the keys after a tab
    bool separator = false;
};

// Returns for each entry the number of its object, from 1, or 0 for an entry without an object.
//
// Both lists are in the same order, but invisible objects, and visible ones in an invisible menu, have no entries, and
// programs add entries without objects. So the longest common run of captions decides: objects File, Open, Edit
// (invisible), Copy, Help and entries File, Open, Recent, Help give 1, 2, 0, 5.
std::vector<int> MatchMenus(std::span<const MenuObject> objects, std::span<const MenuEntry> entries);

}  // namespace qvx::menus
