// Remembers which child of a top-level window has the focus when the user switches away and back.
#pragma once

#include <windows.h>

#include <vector>

namespace qvx {

// The system gives the focus to the top-level window itself whenever it is activated; after a switch to another program
// and back, keys would then not reach the field that the user was in.
class FocusMemory {
  public:
    // Handles WM_ACTIVATE of `window`: remembers the focus when the window is deactivated, and restores it when the
    // window is activated. Returns false where the system's own handling is wanted, since nothing inside had the focus
    // yet.
    bool OnActivate(HWND window, WPARAM wParam);
    // Gives the focus to the child that had it last or, if that one no longer accepts it, to the innermost of its
    // parents that does. Returns false if there is none.
    bool Restore(HWND window) const;

  private:
    std::vector<HWND> last_;  // the child, its parent and so on, without the window itself
};

// Whether the user is in another program: no window of this thread is active, and the foreground is another process's.
bool IsInOtherProgram();

}  // namespace qvx
