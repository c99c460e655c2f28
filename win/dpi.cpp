#include "win/dpi.h"

#include "win/gdi_surface.h"
#include "win/handles.h"

namespace qvx {

namespace {

std::optional<Dpi> overridden;

// Returns one of the calls that exist from Windows 10 on, where a process can have windows of different resolutions;
// null on an older system.
template <typename Call>
Call Find(const char* name) {
    const HMODULE user = GetModuleHandleW(L"user32.dll");
    return user ? reinterpret_cast<Call>(reinterpret_cast<void*>(GetProcAddress(user, name))) : nullptr;
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
    static const auto call = Find<UINT(WINAPI*)(HWND)>("GetDpiForWindow");
    if (window && call) {
        if (const UINT dpi = call(window)) {
            return {static_cast<int>(dpi), static_cast<int>(dpi)};
        }
    }
    return ScreenDpi();
}

DpiChange::DpiChange(HWND changed, WPARAM wParam, LPARAM lParam)
    : window(changed), dpi{LOWORD(wParam), HIWORD(wParam)} {
    RECT place{};
    if (lParam) {
        place = *reinterpret_cast<const RECT*>(lParam);
    } else {
        GetWindowRect(window, &place);
    }
    suggested = FromRECT(place);
}

void DpiChange::Follow(Size size) const {
    SetWindowPos(window, nullptr, suggested.left, suggested.top, size.width, size.height,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

int SystemMetric(int index, Dpi dpi) {
    static const auto call = Find<int(WINAPI*)(int, UINT)>("GetSystemMetricsForDpi");
    return call ? call(index, static_cast<UINT>(dpi.y)) : GetSystemMetrics(index);
}

Size FrameSize(DWORD style, DWORD exStyle, Dpi dpi) {
    static const auto call = Find<BOOL(WINAPI*)(RECT*, DWORD, BOOL, DWORD, UINT)>("AdjustWindowRectExForDpi");
    RECT frame{};
    if (!call || !call(&frame, style, FALSE, exStyle, static_cast<UINT>(dpi.y))) {
        AdjustWindowRectEx(&frame, style, FALSE, exStyle);
    }
    return {static_cast<int>(frame.right - frame.left), static_cast<int>(frame.bottom - frame.top)};
}

NONCLIENTMETRICSW FrameMetrics(Dpi dpi) {
    static const auto call = Find<BOOL(WINAPI*)(UINT, UINT, void*, UINT, UINT)>("SystemParametersInfoForDpi");
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    if (!call || !call(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, static_cast<UINT>(dpi.y))) {
        SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    }
    return metrics;
}

DpiOverride::DpiOverride(Dpi dpi) : previous_(overridden) { overridden = dpi; }
DpiOverride::~DpiOverride() { overridden = previous_; }

}  // namespace qvx
