// The design of the backup dialog and the password prompt: texts, positions, tab order. Lengths are in twips unless
// stated otherwise.
#pragma once

#include <array>

#include "common/geometry.h"
#include "common/text.h"
#include "controls/backup/settings.h"

namespace qvx::backup {

namespace form {

// The items of the dialog, in tab order.
enum class Item { frame, location, browse, email, groupLabel, groupName, outcome, ok, cancel };
inline constexpr std::array items{Item::frame,     Item::location, Item::browse, Item::email, Item::groupLabel,
                                  Item::groupName, Item::outcome,  Item::ok,     Item::cancel};

TextView Caption(Mode mode);
// Empty for the fields and the outcome line, which initially have no text.
TextView Caption(Item item, Mode mode);

// The width of the client area.
constexpr int width = 5550;
// The items above the name of a separate group need at least this height of the client area.
constexpr int contentHeight = 1500;

// Returns the height of the whole window. `frameHeight` is the total height of the system's frame above and below the
// client area; a frame that leaves too little room for the content makes the window higher.
int Height(bool groupNameShown, int frameHeight);
// Returns the position in the client area. While the window has its smaller height, the name of a separate group is
// just below the visible part.
Rect Place(Item item, int frameHeight);

// Whether the OK button is enabled.
bool MayRun(TextView location);

}  // namespace form

namespace prompt {

enum class Item { notice, label, password, ok, cancel };
inline constexpr std::array items{Item::notice, Item::label, Item::password, Item::ok, Item::cancel};

constexpr TextView caption = u"Password";
TextView Caption(Item item);

constexpr Size client{4800, 1920};
Rect Place(Item item);

}  // namespace prompt

}  // namespace qvx::backup
