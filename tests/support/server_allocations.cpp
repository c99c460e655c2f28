#include "tests/support/server_allocations.h"

#include <gtest/gtest.h>
#include <oleauto.h>

#include <cstdlib>

#include "tests/support/server_under_test.h"

namespace qvx::test {

namespace {

int allocationsLeft = -1;  // until one fails; below 0 none does
bool failsForGood = false;
bool hasFailed = false;
DWORD starvedThread = 0;

bool Fails() {
    if (allocationsLeft < 0 || GetCurrentThreadId() != starvedThread || allocationsLeft-- > 0) return false;
    if (failsForGood) allocationsLeft = 0;
    hasFailed = true;
    return true;
}

void* Malloc(std::size_t size) { return Fails() ? nullptr : std::malloc(size); }
void* Realloc(void* memory, std::size_t size) { return Fails() ? nullptr : std::realloc(memory, size); }
BSTR WINAPI AllocString(const OLECHAR* text, UINT length) {
    return Fails() ? nullptr : SysAllocStringLen(text, length);
}
LPVOID WINAPI TaskMemAlloc(SIZE_T size) { return Fails() ? nullptr : CoTaskMemAlloc(size); }
HGLOBAL WINAPI AllocGlobal(UINT flags, SIZE_T size) { return Fails() ? nullptr : GlobalAlloc(flags, size); }
SAFEARRAY* WINAPI CreateVector(VARTYPE type, LONG first, ULONG count) {
    return Fails() ? nullptr : SafeArrayCreateVector(type, first, count);
}

}  // namespace

ServerAllocations::ServerAllocations() {
    const std::pair<const char*, void*> replaced[] = {
        {"malloc", reinterpret_cast<void*>(&Malloc)},
        {"realloc", reinterpret_cast<void*>(&Realloc)},
        {"SysAllocStringLen", reinterpret_cast<void*>(&AllocString)},
        {"CoTaskMemAlloc", reinterpret_cast<void*>(&TaskMemAlloc)},
        {"GlobalAlloc", reinterpret_cast<void*>(&AllocGlobal)},
        {"SafeArrayCreateVector", reinterpret_cast<void*>(&CreateVector)},
    };
    for (const auto& [name, replacement] : replaced) {
        patches_.emplace_back(ServerUnderTest::Get().Module(), name, replacement);
        EXPECT_TRUE(patches_.back().Found()) << name;
    }
}

ServerAllocations::Failure::Failure(int passing, bool forGood) {
    starvedThread = GetCurrentThreadId();
    failsForGood = forGood;
    hasFailed = false;
    allocationsLeft = passing;
}

ServerAllocations::Failure::~Failure() { allocationsLeft = -1; }

bool ServerAllocations::Failure::Happened() const { return hasFailed; }

}  // namespace qvx::test
