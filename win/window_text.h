// Texts of windows; com/wide_text.h converts between the rules' text and the system's strings.
#pragma once

#include <windows.h>

#include "com/wide_text.h"

namespace qvx {

// Returns the characters alone, without a terminating NUL.
inline const wchar_t* WideData(TextView text) { return Wide(text).data(); }

// Returns the window's text; empty for a null window.
inline Text WindowText(HWND window) {
    const int length = window ? GetWindowTextLengthW(window) : 0;
    Text text(static_cast<std::size_t>(length) + 1, u'\0');
    const int copied = window ? GetWindowTextW(window, WideBuffer(text), length + 1) : 0;
    text.resize(static_cast<std::size_t>(copied > 0 ? copied : 0));
    return text;
}

}  // namespace qvx
