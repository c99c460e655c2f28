// Variables that each thread has a copy of, in a module that may be unloaded.
#pragma once

#include <type_traits>

namespace qvx {

namespace detail {
void* CopyOfThisThread(const void* original) noexcept;
}  // namespace detail

// Returns the calling thread's copy of a variable of namespace scope that is declared [[gnu::section(".tls$")]]. The
// system creates the copies with the variable's initial value, and frees them with the thread or the module. The
// compiler's own thread_local is not used: it allocates at each thread's first use, ends the process when it cannot,
// and leaks memory and handles with each unloading.
template <typename T>
T& OfThisThread(T& original) noexcept {
    static_assert(std::is_trivially_destructible_v<T>, "nobody calls a destructor");
    return *static_cast<T*>(detail::CopyOfThisThread(&original));
}

}  // namespace qvx
