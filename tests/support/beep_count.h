// Counts how often a module beeps, by replacing the system's MessageBeep in the module's own import table.
#pragma once

#include <utility>

#include "tests/support/import_patch.h"

namespace qvx::test {

// Only one may exist at a time; the real function is restored at the end.
class BeepCount {
  public:
    explicit BeepCount(HMODULE module) : patch_(module, "MessageBeep", reinterpret_cast<void*>(&Beep)) { count_ = 0; }

    // Whether the module calls it at all.
    bool Listening() const { return patch_.Found(); }
    // Returns the number of beeps since the last call.
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
