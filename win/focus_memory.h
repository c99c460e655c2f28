// Which child of a top-level window has the focus when the user comes back to it.
#pragma once

#include <windows.h>

#include <vector>

namespace qvx {

// The system gives the focus to a top-level window itself whenever it is activated; keys would then miss the field that
// the user was in before a switch to another program and back.
class FocusMemory {
  public:
    // For WM_ACTIVATE of `window`: keeps who has the focus when the window is left, and gives the focus back when the
    // window is activated. False where the system's own handling is wanted: nobody inside had the focus yet.
    bool OnActivate(HWND window, WPARAM wParam);
    // Gives the focus to the child that had it last or, where that one takes it no longer, to the innermost of its
    // parents that does. False without one.
    bool Restore(HWND window) const;

  private:
    std::vector<HWND> last_;  // the child, its parent and so on, without the window itself
};

}  // namespace qvx
