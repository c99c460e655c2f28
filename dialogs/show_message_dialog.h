// The only way in which the library shows messages to the user. Windows only.
#pragma once

#include <windows.h>

#include <optional>

#include "common/text.h"
#include "dialogs/messages.h"

namespace qvx::dialogs {

// Shows the message box over `owner`'s top-level window (the active window when there is none) and returns when it is
// answered: true for OK and Yes, false for Cancel and No, and when the owner or the program ends meanwhile. Without a
// title, the caption is "  Information". `timeOut` is in milliseconds; 0 or less waits for the user, otherwise the box
// answers with the focused button after that time. The thread's other windows are disabled meanwhile. Boxes may be
// nested: each waits for its own answer. For icon 0, run-time error 35600 is thrown and no box is shown.
bool ShowMessage(HWND owner, TextView prompt, int buttons, const std::optional<Text>& title, int icon, bool blink,
                 int timeOut);

// Shows one of the library's messages in the same way.
bool ShowMessage(HWND owner, TextView prompt, const MessageKind& kind, const std::optional<Text>& title = {});

}  // namespace qvx::dialogs
