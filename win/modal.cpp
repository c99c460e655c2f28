#include "win/modal.h"

#include <utility>

#include "common/placement.h"
#include "win/gdi_surface.h"

namespace qvx {

namespace {

struct Search {
    HWND dialog;
    std::vector<HWND>* found;
};

BOOL CALLBACK CollectEnabled(HWND window, LPARAM data) {
    const auto* search = reinterpret_cast<const Search*>(data);
    if (window != search->dialog && IsWindowVisible(window) && IsWindowEnabled(window)) {
        search->found->push_back(window);
    }
    return TRUE;
}

// The latest scope of the thread that has not ended.
thread_local ModalScope* innermost = nullptr;

}  // namespace

ModalScope::ModalScope(HWND dialog) : focus_(GetFocus()), outer_(innermost) {
    const Search search{dialog, &disabled_};
    EnumThreadWindows(GetCurrentThreadId(), CollectEnabled, reinterpret_cast<LPARAM>(&search));
    for (const HWND window : disabled_) {
        EnableWindow(window, FALSE);
    }
    innermost = this;
}

ModalScope::~ModalScope() { End(); }

void ModalScope::End() {
    if (std::exchange(ended_, true)) return;
    ModalScope** link = &innermost;
    ModalScope* inner = nullptr;
    while (*link != this) {
        inner = *link;
        link = &inner->outer_;
    }
    *link = outer_;
    if (inner) {
        inner->disabled_.insert(inner->disabled_.end(), disabled_.begin(), disabled_.end());
        disabled_.clear();
    }
    for (const HWND window : disabled_) {
        if (IsWindow(window)) {
            EnableWindow(window, TRUE);
        }
    }
    disabled_.clear();
}

void ModalScope::RestoreFocus() const {
    const HWND active = GetActiveWindow();
    if (focus_ && IsWindow(focus_) && active && GetAncestor(focus_, GA_ROOT) == active && IsWindowEnabled(focus_)) {
        SetFocus(focus_);
    }
}

void RunModalLoop(const std::function<bool()>& running, const std::function<bool(const MSG&)>& filter) {
    MSG message{};
    while (running()) {
        const BOOL got = GetMessageW(&message, nullptr, 0, 0);
        if (got == 0) {
            PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        if (got < 0) {
            return;
        }
        if (!filter(message)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
}

Point PlaceDialog(HWND owner, Size box) {
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoW(MonitorFromWindow(owner, MONITOR_DEFAULTTOPRIMARY), &monitor);
    const Rect work = FromRECT(monitor.rcWork);
    RECT over{};
    const bool hasOver = owner && IsWindowVisible(owner) && !IsIconic(owner) && GetWindowRect(owner, &over);
    return PlaceOver(hasOver ? FromRECT(over) : work, work, box);
}

}  // namespace qvx
