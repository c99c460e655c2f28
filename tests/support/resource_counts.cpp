#include "tests/support/resource_counts.h"

#include <windows.h>

#include <vector>

#include "soak/watch/handle_counts.h"

namespace qvx::test {

namespace {

// A heap that checks what is freed holds the last thousand or so blocks back to see whether they are still written to.
// They would be counted until others push them out.
void PushOutFreed(HANDLE heap) {
    constexpr int heldBack = 2048;
    for (int i = 0; i < heldBack; ++i) HeapFree(heap, 0, HeapAlloc(heap, 0, 16));
}

}  // namespace

ResourceCounts CountResources() {
    ResourceCounts counts;
    counts.windows = ThreadWindows();
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
