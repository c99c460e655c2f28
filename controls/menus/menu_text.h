// The text of a menu item: its label, its shortcut, its access key, and the item that a typed character selects.
#pragma once

#include <span>

#include "common/text.h"

namespace qvx::menus {

struct MenuText {
    Text label;  // "&" before the access key, "&&" for an "&" that is shown
    Text keys;   // the text after the first tab, or after the mark that moves the rest to the far edge
};

// Splits an item's text into the label and the keys.
MenuText SplitMenuText(TextView text);

// Returns the character after the last "&" that is not doubled, which the system underlines, in lower case; 0 without
// one.
char16_t MenuAccessKey(TextView text);

// The properties of an item that the keyboard search uses.
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

// Returns the effect of a typed character. Items with it as their access key match; when there are none, those without
// an access key whose text begins with it. A single match is executed, or selected if it is disabled; of several
// matches, the one after the selected item is selected, and after the last one the first.
MenuAnswer ChooseByKey(std::span<const MenuChoice> items, char16_t typed);

}  // namespace qvx::menus
