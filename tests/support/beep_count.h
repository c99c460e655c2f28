// How often a module beeps, heard by standing in for the system's MessageBeep in the module's own table of imports.
#pragma once

#include <utility>

#include "tests/support/import_patch.h"

namespace qvx::test {

// One at a time; the real one is back at the end.
class BeepCount {
  public:
    explicit BeepCount(HMODULE module) : patch_(module, "MessageBeep", reinterpret_cast<void*>(&Beep)) { count_ = 0; }

    // Whether the module calls it at all.
    bool Listening() const { return patch_.Found(); }
    // Since the last asking.
    int Take() { return std::exchange(count_, 0); }

  private:
    static BOOL WINAPI Beep(UINT) {
        ++count_;
        return TRUE;
    }

    inline static int count_ = 0;
    ImportPatch patch_;
};

}  // namespace qvx::test
