// Modal dialogs of the library: a nested message loop, during which the thread's other windows are disabled.
#pragma once

#include <windows.h>

#include <functional>
#include <list>

#include "common/geometry.h"
#include "common/held_keys.h"
#include "win/window.h"

namespace qvx {

// Disables every enabled top-level window of this thread except `dialog`, as modal forms do, and enables the same
// windows again at the end. The focus then returns to the window that had it, if that still accepts it. End must be
// called while the dialog is still visible: the system activates the owner only if it is enabled by then. Scopes nest,
// and may end in any order, as dialogs do that close themselves after a time: windows that an outer scope has disabled
// stay disabled until the inner scopes have ended, too.
class ModalScope {
  public:
    // Throws std::bad_alloc, with every window left as it was.
    explicit ModalScope(HWND dialog);
    ~ModalScope();
    ModalScope(const ModalScope&) = delete;
    ModalScope& operator=(const ModalScope&) = delete;
    // Enables the windows again; a second call does nothing.
    void End();
    // Ends the scope, destroys the dialog and restores the focus, in the order that this needs.
    void Close(Window& dialog);
    // To be called after the dialog has been destroyed or hidden.
    void RestoreFocus() const;
    // Whether a message of the dialog is to be dropped: the repeat of a key that did not go down in it.
    bool Drops(const MSG& message);

  private:
    HWND dialog_;
    HeldKeys keys_;
    std::list<HWND> disabled_;
    HWND focus_;
    ModalScope* outer_;
    bool ended_ = false;
};

// Processes messages until `running` returns false. `filter` gets each message first, except those that the dialog
// drops, and returns true for those that it has handled. A request to quit the thread ends the loop and is posted again
// for the outer loop.
void RunModalLoop(ModalScope& modal, const std::function<bool()>& running,
                  const std::function<bool(const MSG&)>& filter);

// Returns the screen position for a dialog of that size in pixels: over its owner, on the owner's monitor; in the
// middle of the screen without a visible owner.
Point PlaceDialog(HWND owner, Size box);

}  // namespace qvx
