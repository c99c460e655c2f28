#include "win/replaced_procedure.h"

#include "com/module.h"
#include "win/thread_value.h"

namespace qvx {

namespace {

// A message that is being passed on, linked with the messages around it.
struct Passing {
    HWND window;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    const Passing* outer;

    bool Same(const Passing& other) const {
        return window == other.window && message == other.message && wParam == other.wParam && lParam == other.lParam;
    }
};

[[gnu::section(".tls$")]] const Passing* passing = nullptr;

// How often one message may be in progress for one window at a time before it counts as an endless loop.
constexpr int mostRounds = 3;

ATOM ClassOf(HWND window) { return static_cast<ATOM>(GetClassLongPtrW(window, GCW_ATOM)); }

}  // namespace

bool ReplacedProcedure::Start(HWND window) {
    const std::lock_guard lock(access_);
    // The library's procedure may also still be in use below other code's. The window is noted first: the procedure
    // could not pass on messages of an unknown window.
    const auto [noted, isNew] = windows_.try_emplace(window);
    if (!isNew) return true;
    const auto previous =
        reinterpret_cast<WNDPROC>(SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(own_)));
    if (!previous) {
        windows_.erase(noted);
        return false;
    }
    kept_ = previous;
    keptClass_ = ClassOf(window);
    noted->second = {previous, keptClass_};
    return true;
}

// The kept procedure works for all windows of its class. That of another class would misinterpret the window's extra
// bytes, so a window of another class uses the procedure that it had itself.
WNDPROC ReplacedProcedure::PreviousOf(HWND window, bool ownOnly) const {
    const auto found = windows_.find(window);
    if (found == windows_.end()) return nullptr;
    return !ownOnly && kept_ && found->second.windowClass == keptClass_ ? kept_ : found->second.previous;
}

void ReplacedProcedure::End(HWND window) {
    const std::lock_guard lock(access_);
    const WNDPROC previous = PreviousOf(window, false);
    if (!previous) return;
    if (reinterpret_cast<WNDPROC>(GetWindowLongPtrW(window, GWLP_WNDPROC)) != own_) {
        KeepModuleLoaded();
        return;
    }
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(previous));
    windows_.erase(window);
    if (windows_.empty()) kept_ = nullptr;
}

void ReplacedProcedure::Forget(HWND window) {
    const std::lock_guard lock(access_);
    windows_.erase(window);
    if (windows_.empty()) kept_ = nullptr;
}

LRESULT ReplacedProcedure::PassOn(HWND window, UINT message, WPARAM wParam, LPARAM lParam) const {
    const Passing*& innermost = OfThisThread(passing);
    const Passing here{window, message, wParam, lParam, innermost};
    // The kept procedure may serve many windows and return from each of them to the library's: with two windows, one
    // subclassed before and one after the library, the message would never end. The window's own previous procedure
    // breaks the loop.
    int rounds = 0;
    for (const Passing* outer = innermost; outer; outer = outer->outer) rounds += outer->Same(here);
    WNDPROC previous = nullptr;
    {
        const std::lock_guard lock(access_);
        previous = PreviousOf(window, rounds >= mostRounds);
    }
    if (!previous || rounds > 2 * mostRounds) return DefWindowProcW(window, message, wParam, lParam);
    innermost = &here;
    const LRESULT result = CallWindowProcW(previous, window, message, wParam, lParam);
    innermost = here.outer;
    return result;
}

}  // namespace qvx
