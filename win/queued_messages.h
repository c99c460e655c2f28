// Removes some of the messages that wait for this thread, out of turn.
#pragma once

#include <windows.h>

#include <optional>

namespace qvx {

// Every look into the queue also returns a request to end the thread, whatever messages are asked for, and removes it.
// This class keeps the request and posts it again at the end of the scope, for the loop that it is meant for.
class QueuedMessages {
  public:
    QueuedMessages() = default;
    ~QueuedMessages() {
        if (quit_) PostQuitMessage(*quit_);
    }
    QueuedMessages(const QueuedMessages&) = delete;
    QueuedMessages& operator=(const QueuedMessages&) = delete;

    // Removes the next message between `first` and `last` for a window and its children, or for the whole thread if
    // `window` is null. `kinds` are the system's PM_QS_ flags, 0 for all. Returns false when no message waits.
    bool Take(MSG& message, HWND window, UINT first, UINT last, UINT kinds = 0) {
        while (PeekMessageW(&message, window, first, last, PM_REMOVE | kinds)) {
            if (message.message != WM_QUIT) return true;
            quit_ = static_cast<int>(message.wParam);
        }
        return false;
    }

  private:
    std::optional<int> quit_;
};

}  // namespace qvx
