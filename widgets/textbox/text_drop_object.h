// Dropping text from other programs onto a text box.
#pragma once

#include <windows.h>

#include <oleidl.h>

#include "com/pointer.h"

namespace qvx {

class TextBoxWindow;

// Accepts texts dropped on the box while it has a window, and inserts them at the position of the mouse. Does nothing
// when the thread's host has not initialised the system's drag and drop, as console programs have not.
class TextDropTarget {
  public:
    TextDropTarget();
    ~TextDropTarget();
    TextDropTarget(const TextDropTarget&) = delete;
    TextDropTarget& operator=(const TextDropTarget&) = delete;

    // The box must have a window and outlive the registration.
    void Attach(TextBoxWindow& box);
    void Detach();

  private:
    class Target;
    ComPtr<Target> target_;
    HWND window_ = nullptr;
};

}  // namespace qvx
