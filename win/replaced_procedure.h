// A message procedure that replaces those of windows. The library keeps a single value for the previous procedure: the
// window that comes last decides it for all.
#pragma once

#include <windows.h>

#include <map>
#include <mutex>

#include "com/lock.h"

namespace qvx {

class ReplacedProcedure {
  public:
    // `own` is the procedure that the windows get.
    explicit ReplacedProcedure(WNDPROC own) : own_(own) {}
    ReplacedProcedure(const ReplacedProcedure&) = delete;
    ReplacedProcedure& operator=(const ReplacedProcedure&) = delete;

    // Replaces the window's procedure with the library's own and keeps the previous one. A window that already has the
    // library's procedure stays as it is: the kept procedure must never be that one, which would call itself for ever.
    // Returns false when the system refuses. Throws std::bad_alloc, with the window left as it was.
    bool Start(HWND window);
    // Restores the kept procedure of the window. Where other code has replaced the procedure meanwhile, that code's
    // procedure stays, and the library's continues to pass on the messages it gets from there; the module then stays
    // loaded.
    void End(HWND window);
    // The window has been destroyed.
    void Forget(HWND window);

    // Passes a message on to the procedure that the window had before.
    LRESULT PassOn(HWND window, UINT message, WPARAM wParam, LPARAM lParam) const;

  private:
    struct Record {
        WNDPROC previous = nullptr;  // of this very window
        ATOM windowClass = 0;
    };

    WNDPROC PreviousOf(HWND window, bool ownOnly) const;

    WNDPROC own_;
    mutable Lock access_;
    WNDPROC kept_ = nullptr;  // the library's single value
    ATOM keptClass_ = 0;      // the class of the window that it came from
    // Windows whose messages come here, including those that were ended while others' procedures were on top.
    std::map<HWND, Record> windows_;
};

}  // namespace qvx
