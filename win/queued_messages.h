// Some of the messages that wait for this thread, taken out of turn.
#pragma once

#include <windows.h>

#include <optional>

namespace qvx {

// A request to end the thread comes with any look into the queue, whatever messages are asked for, and the look takes
// it away. It is kept here and posted again at the end of the scope, for the loop that it is meant for.
class QueuedMessages {
  public:
    QueuedMessages() = default;
    ~QueuedMessages() {
        if (quit_) PostQuitMessage(*quit_);
    }
    QueuedMessages(const QueuedMessages&) = delete;
    QueuedMessages& operator=(const QueuedMessages&) = delete;

    // Takes the next message between `first` and `last` for a window and those in it, or for the whole thread where it
    // is null. `kinds` are of the system's PM_QS_ flags, none for all. False when none waits.
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
