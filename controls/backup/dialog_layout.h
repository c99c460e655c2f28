// The backup dialog and the password prompt as they were designed: texts, places, the order of Tab. Twips where nothing
// else is said.
#pragma once

#include <array>

#include "common/geometry.h"
#include "common/text.h"
#include "controls/backup/settings.h"

namespace qvx::backup {

namespace form {

// What is on the dialog, in the order of Tab.
enum class Item { frame, location, browse, email, groupLabel, groupName, outcome, ok, cancel };
inline constexpr std::array items{Item::frame,     Item::location, Item::browse, Item::email, Item::groupLabel,
                                  Item::groupName, Item::outcome,  Item::ok,     Item::cancel};

TextView Caption(Mode mode);
// Empty for the fields and the outcome line, which come without a text.
TextView Caption(Item item, Mode mode);

// Of the client area.
constexpr int width = 5550;
// What lies above the name of a separate group needs at least that much of the client area.
constexpr int contentHeight = 1500;

// The whole window's height with the frame that the system gives it, which is `frameHeight` high above and below the
// client area together. A frame that leaves the content too little room makes the window higher.
int Height(bool groupNameShown, int frameHeight);
// In the client area. The name of a separate group lies just below what the lower window shows.
Rect Place(Item item, int frameHeight);

// Whether the OK button takes input.
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
