// A lock that is nothing but a word: it never allocates and leaves nothing behind in a module that is unloaded, as the
// standard library's does here.
#pragma once

#include <windows.h>

namespace qvx {

// For std::lock_guard and its kin; not recursive.
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
