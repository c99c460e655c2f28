// Keyboard and mouse input, in the form in which the system gets a user's.
#pragma once

#include <windows.h>

#include <string>

#include "common/geometry.h"

namespace qvx::soak {

// The foreground window receives the input.
class Input {
  public:
    // A key by its name, as KeyOf takes it.
    void Press(const std::string& name);
    // Types UTF-8 text with the keys of its characters, if there are such keys.
    void Type(const std::string& text);
    // Moves the pointer to a position in pixels of the screen; the position is limited to the screen.
    void MoveTo(Point place);
    // Sends MOUSEEVENTF_LEFTDOWN and similar events at the pointer's position.
    void Button(DWORD flags);
    // Positive values turn the wheel away from the user.
    void Wheel(int notches);

    // The number of events sent so far.
    long Sent() const { return sent_; }

  private:
    void Send(INPUT input);
    void SendKey(WORD key, bool down, DWORD flags = 0);
    void SendMouse(DWORD flags, Point place = {}, DWORD data = 0);

    long sent_ = 0;
};

}  // namespace qvx::soak
