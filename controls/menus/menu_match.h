// Which of a form's menu objects stands behind which item of its menus, and under which keys pictures are kept for
// them.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "common/text.h"

namespace qvx::menus {

// A menu's key in an image list: its name, and for an element of a control array the index in parentheses.
Text PictureKey(TextView name, std::optional<std::int32_t> index);
// The key of a copied picture: the running number of its menu object, from 1, and "_".
Text NumberKey(int number);

// A menu object, in the order of the form's controls: each menu before what is in it.
struct MenuObject {
    Text caption;  // "-" is a dividing line
    bool visible = true;
};

// An item of a menu, in the order of the menus: each item before what it opens.
struct MenuEntry {
    Text text;  // with its keys behind a tab
    bool separator = false;
};

// For each entry the number of its object, from 1, or 0 for one that has none.
//
// Both lists are in one order, but invisible objects, and visible ones in an invisible menu, have no entries, and
// programs add entries without objects. So the longest run of equal captions in both decides: objects File, Open, Edit
// (invisible), Copy, Help and entries File, Open, Recent, Help give 1, 2, 0, 5.
std::vector<int> MatchMenus(std::span<const MenuObject> objects, std::span<const MenuEntry> entries);

}  // namespace qvx::menus
