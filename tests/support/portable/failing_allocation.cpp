#include "tests/support/portable/failing_allocation.h"

#include <atomic>
#include <cstdlib>

namespace {

std::atomic<int> allocationsLeft = -1;  // until one fails; below 0 none does
std::atomic<bool> failsForGood = false;
std::atomic<bool> hasFailed = false;

bool Fails() {
    if (allocationsLeft < 0 || allocationsLeft-- != 0) {
        return false;
    }
    if (failsForGood) {
        allocationsLeft = 0;
    }
    hasFailed = true;
    return true;
}

}  // namespace

extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier): the linker's own names for wrapped functions
void* __real_malloc(std::size_t size);
void* __real_realloc(void* memory, std::size_t size);
void* __wrap_malloc(std::size_t size);
void* __wrap_realloc(void* memory, std::size_t size);

void* __wrap_malloc(std::size_t size) { return Fails() ? nullptr : __real_malloc(size); }
void* __wrap_realloc(void* memory, std::size_t size) { return Fails() ? nullptr : __real_realloc(memory, size); }
// NOLINTEND(bugprone-reserved-identifier)
}

// Not inline, where the compiler would warn of a malloc that meets a delete.
[[gnu::noinline]] void* operator new(std::size_t size) {
    if (void* memory = std::malloc(size == 0 ? 1 : size)) {
        return memory;
    }
    throw std::bad_alloc();
}
[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return std::malloc(size == 0 ? 1 : size);
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace qvx::test {

FailingAllocation::FailingAllocation(int passing, Starvation starvation) {
    failsForGood = starvation == Starvation::forGood;
    hasFailed = false;
    allocationsLeft = passing;
}

FailingAllocation::~FailingAllocation() { allocationsLeft = -1; }

bool FailingAllocation::Happened() const { return hasFailed; }

}  // namespace qvx::test
