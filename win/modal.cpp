#include "win/modal.h"

#include <new>
#include <utility>

#include "common/dialog_placement.h"
#include "win/gdi_surface.h"
#include "win/thread_value.h"

namespace qvx {

namespace {

struct Search {
    HWND dialog;
    std::list<HWND>* found;
    bool complete = true;
};

// The system calls this function, so no exception may leave it.
BOOL CALLBACK CollectEnabled(HWND window, LPARAM data) {
    auto* search = reinterpret_cast<Search*>(data);
    if (window == search->dialog || !IsWindowVisible(window) || !IsWindowEnabled(window)) return TRUE;
    try {
        search->found->push_back(window);
    } catch (const std::bad_alloc&) {
        search->complete = false;
    }
    return search->complete;
}

// The thread's latest scope that has not ended.
[[gnu::section(".tls$")]] ModalScope* innermost = nullptr;

}  // namespace

ModalScope::ModalScope(HWND dialog) : dialog_(dialog), focus_(GetFocus()), outer_(OfThisThread(innermost)) {
    Search search{dialog, &disabled_};
    EnumThreadWindows(GetCurrentThreadId(), CollectEnabled, reinterpret_cast<LPARAM>(&search));
    if (!search.complete) throw std::bad_alloc();
    if (outer_) outer_->keys_.Leave();
    for (const HWND window : disabled_) {
        EnableWindow(window, FALSE);
    }
    OfThisThread(innermost) = this;
}

ModalScope::~ModalScope() { End(); }

void ModalScope::End() {
    if (std::exchange(ended_, true)) return;
    ModalScope** link = &OfThisThread(innermost);
    ModalScope* inner = nullptr;
    while (*link != this) {
        inner = *link;
        link = &inner->outer_;
    }
    *link = outer_;
    if (inner) {
        inner->disabled_.splice(inner->disabled_.end(), disabled_);
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

bool ModalScope::Drops(const MSG& message) {
    if (message.hwnd != dialog_ && !IsChild(dialog_, message.hwnd)) return false;
    const auto key = static_cast<int>(message.wParam);
    switch (message.message) {
        case WM_KEYDOWN:
        case WM_SYSKEYDOWN:
            return !keys_.Down(key, (message.lParam & static_cast<LPARAM>(KF_REPEAT) << 16) != 0);
        case WM_KEYUP:
        case WM_SYSKEYUP:
            keys_.Up(key);
            return false;
        default:
            return false;
    }
}

void ModalScope::Close(Window& dialog) {
    End();
    dialog.Destroy();
    RestoreFocus();
}

void RunModalLoop(ModalScope& modal, const std::function<bool()>& running,
                  const std::function<bool(const MSG&)>& filter) {
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
        if (!modal.Drops(message) && !filter(message)) {
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
