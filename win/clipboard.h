// Text on the system's clipboard.
#pragma once

#include <windows.h>

#include <optional>

#include "common/text.h"

namespace qvx {

// The error of both when another program holds the clipboard, and goes on holding it for a quarter of a second.
constexpr int clipboardUnavailable = 521;

// Replaces what is on the clipboard. A text ends where it has a NUL, as every text there does. `owner` is a window of
// this thread. Throws clipboardUnavailable, or error 7.
void PutOnClipboard(HWND owner, TextView text);

// Nothing when no text is there. Throws clipboardUnavailable.
std::optional<Text> TextOnClipboard(HWND owner);

}  // namespace qvx
