// Replacements for parts of the language's runtime library, for a module that is loaded and unloaded in a host's
// process and must report to its host when memory has run out. The toolchain's versions are written for programs: they
// allocate what they need to throw, to lock and to initialise when a thread first does so; when they cannot, they end
// the process or call themselves for ever; and they leak handles and memory when the module is unloaded. The linker
// uses these versions instead.
#include <windows.h>

#include <cxxabi.h>

#include <array>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <exception>

#include "win/thread_value.h"

namespace {

// ---- Memory of exceptions -------------------------------------------------------------------------------------------

// The runtime's own data precede the exception; this is more room than they need.
constexpr std::size_t headerSize = 256;
constexpr std::size_t blockSize = 1024;

struct alignas(16) Block {
    std::array<std::byte, blockSize> bytes;
};

// For exceptions when there is no other memory: far more than can be in flight at a time.
std::array<Block, 16> reserve;
std::array<std::atomic_flag, 16> taken;

void* TakeBlock(std::size_t size) noexcept {
    if (void* const memory = std::malloc(size)) return memory;
    for (std::size_t i = 0; size <= blockSize && i < reserve.size(); ++i) {
        if (!taken[i].test_and_set(std::memory_order_acquire)) return &reserve[i];
    }
    std::terminate();
}

void GiveBack(void* memory) noexcept {
    const auto* const block = static_cast<const Block*>(memory);
    if (block < reserve.data() || block >= reserve.data() + reserve.size()) return std::free(memory);
    taken[static_cast<std::size_t>(block - reserve.data())].clear(std::memory_order_release);
}

// ---- Exceptions in flight -------------------------------------------------------------------------------------------

// The runtime knows this structure by another name.
struct Exceptions {
    void* caught;
    unsigned uncaught;
};

[[gnu::section(".tls$")]] Exceptions exceptions{};

// ---- Initialisation of local statics --------------------------------------------------------------------------------

// The compiler's code examines the first byte before it calls these functions; the rest belongs to the runtime.
struct GuardWord {
    std::atomic<char> done;
    bool busy;
};

SRWLOCK guards = SRWLOCK_INIT;
CONDITION_VARIABLE guardsChanged = CONDITION_VARIABLE_INIT;

GuardWord& GuardOf(__cxxabiv1::__guard* guard) { return *reinterpret_cast<GuardWord*>(guard); }

void EndInitialisation(GuardWord& guard, char done) noexcept {
    AcquireSRWLockExclusive(&guards);
    guard.busy = false;
    guard.done.store(done, std::memory_order_release);
    ReleaseSRWLockExclusive(&guards);
    WakeAllConditionVariable(&guardsChanged);
}

}  // namespace

namespace __cxxabiv1 {

extern "C" {

void* __cxa_allocate_exception(std::size_t size) noexcept {
    void* const memory = TakeBlock(headerSize + size);
    std::memset(memory, 0, headerSize);
    return static_cast<std::byte*>(memory) + headerSize;
}

void __cxa_free_exception(void* exception) noexcept { GiveBack(static_cast<std::byte*>(exception) - headerSize); }

// Represents an exception that is thrown again; it consists of the runtime's data alone.
__cxa_dependent_exception* __cxa_allocate_dependent_exception() noexcept {
    void* const memory = TakeBlock(headerSize);
    return static_cast<__cxa_dependent_exception*>(std::memset(memory, 0, headerSize));
}

void __cxa_free_dependent_exception(__cxa_dependent_exception* exception) noexcept { GiveBack(exception); }

__cxa_eh_globals* __cxa_get_globals() noexcept {
    return reinterpret_cast<__cxa_eh_globals*>(&qvx::OfThisThread(exceptions));
}

__cxa_eh_globals* __cxa_get_globals_fast() noexcept { return __cxa_get_globals(); }

int __cxa_guard_acquire(__guard* object) {
    GuardWord& guard = GuardOf(object);
    AcquireSRWLockExclusive(&guards);
    while (guard.busy) SleepConditionVariableSRW(&guardsChanged, &guards, INFINITE, 0);
    const bool first = guard.done.load(std::memory_order_relaxed) == 0;
    guard.busy = first;
    ReleaseSRWLockExclusive(&guards);
    return first;
}

void __cxa_guard_release(__guard* guard) noexcept { EndInitialisation(GuardOf(guard), 1); }

void __cxa_guard_abort(__guard* guard) noexcept { EndInitialisation(GuardOf(guard), 0); }

}  // extern "C"

}  // namespace __cxxabiv1

namespace __gnu_cxx {

// Called for an exception that nothing catches. A module has no console to describe it on, and the toolchain's version
// would link a demangler.
void __verbose_terminate_handler() { std::abort(); }

}  // namespace __gnu_cxx
