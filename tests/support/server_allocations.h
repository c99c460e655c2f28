// Allocations of the component server that fail: its own calls of the C library's malloc and realloc (and so its
// operator new), of SysAllocString and its kin and of CoTaskMemAlloc, replaced in its table of imports. The system's
// own go on.
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

    // For the length of a scope the calling thread's allocation behind `passing` others fails, alone or with all behind
    // it.
    class Failure {
      public:
        Failure(int passing, bool forGood);
        ~Failure();
        Failure(const Failure&) = delete;
        Failure& operator=(const Failure&) = delete;
        // Whether it has come to that.
        bool Happened() const;
    };

    // check(passing, forGood), which are a Failure's arguments, for one allocation after the other as long as it
    // returns that one has failed. Of what allocates much, only each of the first twenty is tried and then every
    // fifth part further.
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
