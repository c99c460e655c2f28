#include "win/dpi.h"

#include "win/handles.h"

namespace qvx {

namespace {

std::optional<Dpi> overridden;

// Present from Windows 10 on; a process there can have windows of different resolutions.
using GetDpiForWindowCall = UINT(WINAPI*)(HWND);

GetDpiForWindowCall FindGetDpiForWindow() {
    const HMODULE user = GetModuleHandleW(L"user32.dll");
    return user
               ? reinterpret_cast<GetDpiForWindowCall>(reinterpret_cast<void*>(GetProcAddress(user, "GetDpiForWindow")))
               : nullptr;
}

Dpi OfDevice(HDC dc) {
    const int x = dc ? GetDeviceCaps(dc, LOGPIXELSX) : 0;
    const int y = dc ? GetDeviceCaps(dc, LOGPIXELSY) : 0;
    return {x > 0 ? x : 96, y > 0 ? y : 96};
}

}  // namespace

Dpi ScreenDpi() {
    if (overridden) {
        return *overridden;
    }
    const WindowDc screen(nullptr);
    return OfDevice(screen.Get());
}

Dpi WindowDpi(HWND window) {
    if (overridden) {
        return *overridden;
    }
    static const GetDpiForWindowCall call = FindGetDpiForWindow();
    if (window && call) {
        if (const UINT dpi = call(window)) {
            return {static_cast<int>(dpi), static_cast<int>(dpi)};
        }
    }
    return ScreenDpi();
}

DpiOverride::DpiOverride(Dpi dpi) : previous_(overridden) { overridden = dpi; }
DpiOverride::~DpiOverride() { overridden = previous_; }

}  // namespace qvx
