// What the compiler's stack protector needs in each program and module. The toolchain's own version asks the system's
// cryptographic provider for a number whenever a module is loaded, and prints a message and goes on to clean up when a
// frame is damaged; this one costs nothing at the start, and ends the process at once.
#include <windows.h>

#include <cstdint>

extern "C" {

// Every protected function compares the copy in its frame with this value.
std::uintptr_t __stack_chk_guard = 0;

[[noreturn]] void __stack_chk_fail() {
    // The system's "fail fast", with FAST_FAIL_STACK_COOKIE_CHECK_FAILURE; not all headers declare it.
    asm volatile("int $0x29" : : "c"(2));
    __builtin_unreachable();
}

}  // extern "C"

namespace {

// Runs before all other constructors. The value differs between processes and loads, which is what makes it hard to
// guess; its lowest byte is zero, so that a string that overflows cannot write it.
[[gnu::constructor(101)]] void InitialiseStackGuard() {
    FILETIME now{};
    LARGE_INTEGER counter{};
    GetSystemTimeAsFileTime(&now);
    QueryPerformanceCounter(&counter);
    std::uint64_t mixed = (std::uint64_t{now.dwHighDateTime} << 32 | now.dwLowDateTime) ^
                          static_cast<std::uint64_t>(counter.QuadPart) << 20 ^
                          std::uint64_t{GetCurrentProcessId()} << 40 ^ std::uint64_t{GetCurrentThreadId()} << 8 ^
                          reinterpret_cast<std::uintptr_t>(&now) ^
                          reinterpret_cast<std::uintptr_t>(&__stack_chk_guard) << 12;
    // The finaliser of a splitting generator: each bit of the input changes half of the output's.
    mixed = (mixed ^ mixed >> 30) * 0xBF58476D1CE4E5B9u;
    mixed = (mixed ^ mixed >> 27) * 0x94D049BB133111EBu;
    __stack_chk_guard = static_cast<std::uintptr_t>(mixed ^ mixed >> 31) & ~std::uintptr_t{0xFF};
}

}  // namespace
