#include "win/themed_part.h"

namespace qvx {
namespace {

using Theme = HANDLE;

// The library is not linked: in a program without visual styles, nobody has loaded it.
template <class Function>
Function ThemeFunction(const char* name) {
    const HMODULE library = GetModuleHandleW(L"uxtheme.dll");
    return library ? reinterpret_cast<Function>(GetProcAddress(library, name)) : nullptr;
}

}  // namespace

bool HasTheme(HWND control) {
    const auto get = ThemeFunction<Theme(WINAPI*)(HWND)>("GetWindowTheme");
    return get && get(control);
}

bool DrawThemedComboButton(HDC dc, const RECT& area, bool pressed, bool enabled) {
    constexpr int dropDownButton = 1;
    const auto open = ThemeFunction<Theme(WINAPI*)(HWND, const wchar_t*)>("OpenThemeData");
    const auto draw =
        ThemeFunction<HRESULT(WINAPI*)(Theme, HDC, int, int, const RECT*, const RECT*)>("DrawThemeBackground");
    const auto close = ThemeFunction<HRESULT(WINAPI*)(Theme)>("CloseThemeData");
    if (!open || !draw || !close) return false;
    const Theme theme = open(nullptr, L"COMBOBOX");
    if (!theme) return false;
    const int state = !enabled ? 4 : pressed ? 3 : 1;
    const bool drawn = SUCCEEDED(draw(theme, dc, dropDownButton, state, &area, nullptr));
    close(theme);
    return drawn;
}

}  // namespace qvx
