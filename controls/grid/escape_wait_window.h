// What the user sees of a call that takes long, and how to end it.
#pragma once

#include <windows.h>

#include <optional>

#include "win/queued_messages.h"

namespace qvx::grid {

// Shows the hourglass once a call has taken long, and ends it when the user presses Escape in this program after that.
class EscapeWait {
  public:
    EscapeWait() = default;
    ~EscapeWait() {
        if (before_) SetCursor(*before_);
    }
    EscapeWait(const EscapeWait&) = delete;
    EscapeWait& operator=(const EscapeWait&) = delete;

    bool GoOn() {
        constexpr ULONGLONG longTime = 500;  // milliseconds
        if (GetTickCount64() - start_ < longTime) return true;
        if (!before_) before_ = SetCursor(LoadCursorW(nullptr, IDC_WAIT));
        if (GetWindowThreadProcessId(GetForegroundWindow(), nullptr) != GetCurrentThreadId()) return true;
        if (GetAsyncKeyState(VK_ESCAPE) >= 0) return true;
        // The key has done its work and must not close the dialog with the grid as well.
        QueuedMessages queue;
        MSG message;
        while (queue.Take(message, nullptr, WM_KEYDOWN, WM_KEYDOWN)) {
        }
        return false;
    }

  private:
    ULONGLONG start_ = GetTickCount64();
    std::optional<HCURSOR> before_;
};

}  // namespace qvx::grid
