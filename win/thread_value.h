// Variables of which each thread has one of its own, in a module that may be unloaded.
#pragma once

#include <type_traits>

namespace qvx {

namespace detail {
void* CopyOfThisThread(const void* original) noexcept;
}  // namespace detail

// The calling thread's copy of a variable of namespace scope that is declared [[gnu::section(".tls$")]]. The system
// makes the copies, from what the variable is initialised to, and takes them back with the thread or the module. The
// compiler's own thread_local allocates at each thread's first use, ends the process when it cannot, and leaves memory
// and handles behind with each unloading.
template <typename T>
T& OfThisThread(T& original) noexcept {
    static_assert(std::is_trivially_destructible_v<T>, "nobody calls a destructor");
    return *static_cast<T*>(detail::CopyOfThisThread(&original));
}

}  // namespace qvx
