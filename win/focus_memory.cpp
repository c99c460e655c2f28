#include "win/focus_memory.h"

namespace qvx {

bool FocusMemory::OnActivate(HWND window, WPARAM wParam) {
    if (LOWORD(wParam) == WA_INACTIVE) {
        const HWND focus = GetFocus();
        if (!IsChild(window, focus)) return true;
        last_.clear();
        for (HWND each = focus; each && each != window; each = GetParent(each)) last_.push_back(each);
        return true;
    }
    // A window that is activated while it is minimized does not accept the focus.
    return HIWORD(wParam) || Restore(window);
}

bool FocusMemory::Restore(HWND window) const {
    for (const HWND each : last_) {
        if (IsChild(window, each) && IsWindowVisible(each) && IsWindowEnabled(each)) {
            SetFocus(each);
            return true;
        }
    }
    return false;
}

bool IsInOtherProgram() {
    if (GetActiveWindow()) return false;
    DWORD process = 0;
    GetWindowThreadProcessId(GetForegroundWindow(), &process);
    return process != GetCurrentProcessId();
}

}  // namespace qvx
