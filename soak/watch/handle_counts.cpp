#include "soak/watch/handle_counts.h"

#include <windows.h>

#include <cstddef>

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

}  // namespace

long ThreadWindows() {
    long count = 0;
    EnumThreadWindows(GetCurrentThreadId(), CountTop, reinterpret_cast<LPARAM>(&count));
    return count;
}

// The table of graphics handles that every process sees through its environment block. GetGuiResources would be
// simpler, but returns 0 where the tests usually run.
long GdiHandles() {
    if (const DWORD told = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS)) return static_cast<long>(told);
    // The address of the environment block, and the offset of the table's address in it.
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

}  // namespace qvx::test
