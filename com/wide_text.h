// Conversion between the rules' text and the system's strings. `wchar_t` is UTF-16 on this system, so both views refer
// to the same characters; only this header relies on that in casts.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>
#include <string_view>

#include "common/text.h"

namespace qvx {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

inline const wchar_t* Wide(const char16_t* text) { return reinterpret_cast<const wchar_t*>(text); }
inline const wchar_t* Wide(const Text& text) { return Wide(text.c_str()); }
inline std::wstring_view Wide(TextView text) { return {Wide(text.data()), text.size()}; }
inline wchar_t* WideBuffer(Text& text) { return reinterpret_cast<wchar_t*>(text.data()); }

inline TextView FromWide(std::wstring_view text) {
    return {reinterpret_cast<const char16_t*>(text.data()), text.size()};
}
// A zero-terminated string; null reads as empty.
inline TextView FromWide(const wchar_t* text) { return text ? FromWide(std::wstring_view(text)) : TextView(); }
// A BSTR contains its length and may contain zero characters; null reads as empty.
inline TextView FromBstr(BSTR text) {
    return text ? FromWide(std::wstring_view(text, SysStringLen(text))) : TextView();
}

}  // namespace qvx
