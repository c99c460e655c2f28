// The text of a menu item: what it says, its shortcut, its access key, and which item a typed character means.
#pragma once

#include <span>

#include "common/text.h"

namespace qvx::menus {

struct MenuText {
    Text label;  // "&" in front of the access key, "&&" for one that is shown
    Text keys;   // what stands behind the first tab, or behind the mark that moves the rest to the far edge
};

MenuText SplitMenuText(TextView text);

// The character behind the last "&" that is not doubled, as the system underlines it, in lower case; 0 without one.
char16_t MenuAccessKey(TextView text);

// An item as the keyboard finds it.
struct MenuChoice {
    Text text;
    bool selected = false;
    bool disabled = false;
};

struct MenuAnswer {
    enum class Kind { none, select, execute };
    Kind kind = Kind::none;
    int position = 0;  // of the item
    friend bool operator==(const MenuAnswer&, const MenuAnswer&) = default;
};

// What a typed character does. The items with it as their access key count; when there are none, those without an
// access key that begin with it. One item is executed, or selected while it is disabled; of several the one behind the
// selected item is selected, the first one behind the last.
MenuAnswer ChooseByKey(std::span<const MenuChoice> items, char16_t typed);

}  // namespace qvx::menus
