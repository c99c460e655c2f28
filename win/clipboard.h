// Text and tables on the system's clipboard.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "common/text.h"

namespace qvx {

// The error that both functions throw when another program keeps the clipboard open for longer than a quarter of a
// second.
constexpr int clipboardUnavailable = 521;

// Replaces the contents of the clipboard. The text ends at its first NUL, as every text on the clipboard does. `owner`
// is a window of this thread. `html` is the same in the clipboard's own form of HTML, if there is one. Throws
// clipboardUnavailable, or error 7.
void PutOnClipboard(HWND owner, TextView text, const std::optional<std::string>& html = std::nullopt);

// Returns nullopt when there is no text on the clipboard. Throws clipboardUnavailable.
std::optional<Text> TextOnClipboard(HWND owner);

}  // namespace qvx
