// A message procedure that takes the place of windows' own ones, with one value for the library that keeps the previous
// procedure: the window that comes last decides it for all.
#pragma once

#include <windows.h>

#include <map>
#include <mutex>

#include "com/lock.h"

namespace qvx {

class ReplacedProcedure {
  public:
    // `own` is the procedure that windows get.
    explicit ReplacedProcedure(WNDPROC own) : own_(own) {}
    ReplacedProcedure(const ReplacedProcedure&) = delete;
    ReplacedProcedure& operator=(const ReplacedProcedure&) = delete;

    // Puts the own procedure in the window's place and keeps the previous one. A window that has it already keeps it:
    // what is kept must never be the own procedure, which would call itself for ever. False when the system refuses.
    // Throws std::bad_alloc, with the window as it was.
    bool Start(HWND window);
    // Gives the window back the kept procedure. Where somebody else has replaced the procedure meanwhile, his stays,
    // and the own one goes on behind it, passing on what it gets; the module then stays loaded for it.
    void End(HWND window);
    // The window is gone.
    void Forget(HWND window);

    // A message on its way to whoever had the window before.
    LRESULT PassOn(HWND window, UINT message, WPARAM wParam, LPARAM lParam) const;

  private:
    struct Record {
        WNDPROC previous = nullptr;  // of this very window
        ATOM windowClass = 0;
    };

    WNDPROC PreviousOf(HWND window, bool ownOnly) const;

    WNDPROC own_;
    mutable Lock access_;
    WNDPROC kept_ = nullptr;  // the library's one value
    ATOM keptClass_ = 0;      // of the window that it was the procedure of
    // Windows whose messages come here, ended or not.
    std::map<HWND, Record> windows_;
};

}  // namespace qvx
