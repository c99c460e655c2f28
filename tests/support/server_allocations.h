// Failing allocations of the component server: its own calls of malloc and realloc (and so its operator new),
// SysAllocStringLen, CoTaskMemAlloc, GlobalAlloc and SafeArrayCreateVector are replaced in its import table. The
// system's own allocations succeed.
#pragma once

#include <windows.h>

#include <deque>

#include "tests/support/import_patch.h"

namespace qvx::test {

class ServerAllocations {
  public:
    ServerAllocations();
    ServerAllocations(const ServerAllocations&) = delete;
    ServerAllocations& operator=(const ServerAllocations&) = delete;

    // Within a scope, the calling thread's allocation after `passing` others fails, alone or with all after it.
    class Failure {
      public:
        Failure(int passing, bool forGood);
        ~Failure();
        Failure(const Failure&) = delete;
        Failure& operator=(const Failure&) = delete;
        // Whether an allocation has failed.
        bool Happened() const;
    };

    // Calls check(passing, forGood), with the arguments of a Failure, for one allocation after the other while it
    // returns that one has failed. Where there are many allocations, each of the first twenty is tried, and then steps
    // grow by a fifth of the number so far.
    template <typename Check>
    static void ForEach(Check check) {
        for (const bool forGood : {false, true}) {
            for (int passing = 0; check(passing, forGood);) passing += passing < 20 ? 1 : passing / 5;
        }
    }

  private:
    std::deque<ImportPatch> patches_;
};

}  // namespace qvx::test
