// Between the rules' UTF-16 text and the system's wide characters, which have the same size and encoding.
#pragma once

#include <windows.h>

#include <string_view>

#include "common/text.h"

namespace qvx {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

inline const wchar_t* Wide(const Text& text) { return reinterpret_cast<const wchar_t*>(text.c_str()); }
// Not closed by a NUL.
inline const wchar_t* WideData(TextView text) { return reinterpret_cast<const wchar_t*>(text.data()); }
inline wchar_t* WideBuffer(Text& text) { return reinterpret_cast<wchar_t*>(text.data()); }
inline std::wstring_view WideView(TextView text) { return {WideData(text), text.size()}; }
inline TextView ViewFromWide(std::wstring_view wide) {
    return {reinterpret_cast<const char16_t*>(wide.data()), wide.size()};
}
inline Text FromWide(std::wstring_view wide) { return Text(ViewFromWide(wide)); }

// The window's text; empty for no window.
inline Text WindowText(HWND window) {
    const int length = window ? GetWindowTextLengthW(window) : 0;
    Text text(static_cast<std::size_t>(length) + 1, u'\0');
    const int copied = window ? GetWindowTextW(window, WideBuffer(text), length + 1) : 0;
    text.resize(static_cast<std::size_t>(copied > 0 ? copied : 0));
    return text;
}

}  // namespace qvx
