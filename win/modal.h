// Modal dialogs of our own: a nested message loop, with the thread's other windows disabled meanwhile.
#pragma once

#include <windows.h>

#include <functional>
#include <list>

#include "common/geometry.h"
#include "common/held_keys.h"

namespace qvx {

// Disables every enabled top-level window of this thread but `dialog`, as modal forms do, and enables the same ones
// again at the end. The focus then goes back to where it was, if that window still takes it. End is called while the
// dialog is still visible: the system gives the activation to the owner only if it is enabled by then.
// Scopes nest, and may end in any order, as dialogs do that close themselves after a time: what an outer one disabled
// stays so until the inner ones have ended, too.
class ModalScope {
  public:
    // Throws std::bad_alloc, with every window as it was.
    explicit ModalScope(HWND dialog);
    ~ModalScope();
    ModalScope(const ModalScope&) = delete;
    ModalScope& operator=(const ModalScope&) = delete;
    void End();
    // After the dialog is gone.
    void RestoreFocus() const;
    // Whether a message of the dialog's is to be dropped: the repeat of a key that did not go down in it.
    bool Drops(const MSG& message);

  private:
    HWND dialog_;
    HeldKeys keys_;
    std::list<HWND> disabled_;
    HWND focus_;
    ModalScope* outer_;
    bool ended_ = false;
};

// Runs messages until `running` is false. `filter` sees each one first, but for those that the dialog drops, and
// returns true for those it has dealt with. A request to quit the thread ends the loop and is posted again for the loop
// outside.
void RunModalLoop(ModalScope& modal, const std::function<bool()>& running,
                  const std::function<bool(const MSG&)>& filter);

// The place on the screen for a dialog of that size in pixels: over its owner, on the owner's monitor; in the middle of
// the screen without a visible owner.
Point PlaceDialog(HWND owner, Size box);

}  // namespace qvx
