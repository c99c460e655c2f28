// A lock that consists of a single word: unlike the standard library's here, it never allocates and leaves nothing
// behind in a module that is unloaded.
#pragma once

#include <windows.h>

namespace qvx {

// For std::lock_guard and similar classes; not recursive.
class Lock {
  public:
    Lock() = default;
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

    void lock() noexcept { AcquireSRWLockExclusive(&lock_); }
    void unlock() noexcept { ReleaseSRWLockExclusive(&lock_); }

  private:
    SRWLOCK lock_ = SRWLOCK_INIT;
};

}  // namespace qvx
