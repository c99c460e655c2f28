// Keys and mouse as the system gets them from a person's.
#pragma once

#include <windows.h>

#include <string>

#include "common/geometry.h"

namespace qvx::soak {

// Whoever is in front gets what is sent.
class Input {
  public:
    // A key by its name, as KeyOf takes it.
    void Press(const std::string& name);
    // UTF-8, by the keys that the characters are on, where there are such.
    void Type(const std::string& text);
    // The pointer, in pixels of the screen; held within it.
    void MoveTo(Point place);
    // MOUSEEVENTF_LEFTDOWN and its like, where the pointer is.
    void Button(DWORD flags);
    // Away from the person when positive.
    void Wheel(int notches);

    // Events sent so far.
    long Sent() const { return sent_; }

  private:
    void Send(INPUT input);
    void SendKey(WORD key, bool down, DWORD flags = 0);
    void SendMouse(DWORD flags, Point place = {}, DWORD data = 0);

    long sent_ = 0;
};

}  // namespace qvx::soak
