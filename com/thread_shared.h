// Objects that all users on one thread share.
#pragma once

#include <windows.h>

#include <map>
#include <memory>
#include <mutex>

#include "com/lock.h"
#include "com/module.h"

namespace qvx {

// One object of a type for each thread that uses it. Thread-local variables are no alternative: one with a destructor
// keeps the module loaded until the thread ends, and unloads it then in the middle of the system's own work.
template <typename T>
class ThreadShared {
  public:
    // Returns the calling thread's object, which is created for its first user and destroyed with the last.
    static std::shared_ptr<T> Get() {
        auto& all = OfModule<ThreadShared>();
        const std::lock_guard lock(all.access_);
        std::erase_if(all.byThread_, [](const auto& entry) { return entry.second.expired(); });
        auto& kept = all.byThread_[GetCurrentThreadId()];
        auto object = kept.lock();
        if (!object) kept = object = std::make_shared<T>();
        return object;
    }
    // Returns the same, or null for a thread without users.
    static std::shared_ptr<T> Find() {
        auto& all = OfModule<ThreadShared>();
        const std::lock_guard lock(all.access_);
        const auto found = all.byThread_.find(GetCurrentThreadId());
        return found == all.byThread_.end() ? std::shared_ptr<T>() : found->second.lock();
    }

  private:
    Lock access_;
    std::map<DWORD, std::weak_ptr<T>> byThread_;
};

}  // namespace qvx
