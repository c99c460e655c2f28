// The backup dialog and the password prompt as they were designed: texts, places, and what keys mean. Twips where
// nothing else is said.
#pragma once

#include "backup/settings.h"
#include "common/geometry.h"
#include "common/text.h"

namespace qvx::backup {

namespace dialog {

struct Texts {
    TextView form;
    TextView frame;
    TextView browse;
    TextView ok;
    TextView cancel;
    TextView email;
    TextView groupName;
};
const Texts& TextsOf(Mode mode);

// Within the client area.
constexpr int clientWidth = 5250;
constexpr Rect frame{120, 60, 5130, 780};
constexpr Rect location{240, 345, 3870, 660};
constexpr Rect browse{3960, 345, 5010, 660};
constexpr Rect email{120, 840, 5130, 1095};
constexpr Rect outcome{120, 1200, 2790, 1455};
constexpr Rect ok{2880, 1140, 3960, 1470};
constexpr Rect cancel{4050, 1140, 5130, 1470};
constexpr Rect groupLabel{120, 1590, 1500, 1845};
constexpr Rect groupName{1530, 1545, 5130, 1860};

// The height of the whole window: more for the name of a separate group.
int FormHeight(Mode mode, bool checked);
// Whether the name of a separate group shows, and is in the tab order.
constexpr bool HasGroupName(Mode mode, bool checked) { return mode == Mode::restore && checked; }
// The whole window in pixels, `border` being what the system adds around the client area: high enough for what is in it
// also where captions are larger than they once were.
Size WindowSize(Mode mode, bool checked, Dpi dpi, Size border);

// Whether there is anything to work on.
bool MayRun(TextView path);

}  // namespace dialog

namespace prompt {

constexpr TextView form = u"Password";
constexpr TextView explanation =
    u"Such a group already exists. So you must enter the administrator password of the existing group.";
constexpr TextView label = u"&Password :";
constexpr TextView ok = u"&OK";
constexpr TextView cancel = u"&Cancel";

constexpr Size client{4650, 1560};
constexpr Rect explanationPlace{120, 120, 4530, 570};
constexpr Rect labelPlace{120, 690, 1080, 945};
constexpr Rect password{1110, 645, 4530, 960};
constexpr Rect okPlace{2280, 1110, 3360, 1440};
constexpr Rect cancelPlace{3450, 1110, 4530, 1440};

}  // namespace prompt

// What a key does in either form.
enum class FormKey { none, ok, cancel, focusedButton };
// Enter presses the button that has the focus, else OK; Esc presses Cancel.
FormKey FormKeyOf(int key, int shift, bool buttonHasFocus);

}  // namespace qvx::backup
