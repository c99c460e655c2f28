#include "tests/support/resource_counts.h"

#include <windows.h>

#include <cstddef>
#include <vector>

namespace qvx::test {

namespace {

BOOL CALLBACK CountInner(HWND, LPARAM count) {
    ++*reinterpret_cast<long*>(count);
    return TRUE;
}

BOOL CALLBACK CountTop(HWND window, LPARAM count) {
    ++*reinterpret_cast<long*>(count);
    EnumChildWindows(window, CountInner, count);
    return TRUE;
}

// The table of graphics handles that every process sees through its environment block. GetGuiResources would do, but
// answers 0 where the tests usually run.
long GdiHandles() {
    if (const DWORD told = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS)) return static_cast<long>(told);
    // The environment block's address, and where the table's stands in it.
    using CurrentBlock = const std::byte*(WINAPI*)();
    const auto currentBlock =
        reinterpret_cast<CurrentBlock>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlGetCurrentPeb"));
    if (!currentBlock) return 0;
    constexpr std::size_t tableOffset = sizeof(void*) == 8 ? 0xF8 : 0x94;
    struct Entry {
        ULONG64 object;
        ULONG owner;
        USHORT unique;
        UCHAR type;
        UCHAR flags;
        ULONG64 user;
    };
    const auto* table = *reinterpret_cast<const Entry* const*>(currentBlock() + tableOffset);
    if (!table) return 0;
    constexpr int size = 0x4000;
    long count = 0;
    for (int i = 0; i < size; ++i) count += table[i].object != 0 ? 1 : 0;
    return count;
}

// A heap that checks what is freed holds the last thousand or so blocks back to see whether they are still written to.
// They would be counted until others push them out.
void PushOutFreed(HANDLE heap) {
    constexpr int heldBack = 2048;
    for (int i = 0; i < heldBack; ++i) HeapFree(heap, 0, HeapAlloc(heap, 0, 16));
}

}  // namespace

ResourceCounts CountResources() {
    ResourceCounts counts;
    EnumThreadWindows(GetCurrentThreadId(), CountTop, reinterpret_cast<LPARAM>(&counts.windows));
    counts.gdiObjects = GdiHandles();
    counts.userObjects = static_cast<long>(GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS));
    std::vector<HANDLE> heaps(64);
    heaps.resize(GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data()));
    for (const HANDLE heap : heaps) {
        PushOutFreed(heap);
        if (!HeapLock(heap)) continue;
        PROCESS_HEAP_ENTRY entry{};
        while (HeapWalk(heap, &entry)) {
            if (!(entry.wFlags & PROCESS_HEAP_ENTRY_BUSY)) continue;
            ++counts.heapBlocks;
            counts.heapBytes += static_cast<long>(entry.cbData);
        }
        HeapUnlock(heap);
    }
    return counts;
}

}  // namespace qvx::test
