#include "soak/program_win32.h"

#include <tlhelp32.h>

#include <cwchar>

namespace qvx::soak {

namespace {

constexpr ULONGLONG startTime = 90'000;  // milliseconds

struct Search {
    DWORD process;
    Wanted wanted;
    HWND found = nullptr;
};

BOOL CALLBACK FindShown(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<Search*>(parameter);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process != search.process || !IsWindowVisible(window)) return TRUE;
    const std::string name = ClassOf(window);
    if (search.wanted == Wanted::main && name != formClass && name != designerClass) return TRUE;
    search.found = window;
    return FALSE;
}

}  // namespace

std::string ClassOf(HWND window) {
    char name[64] = "";
    GetClassNameA(window, name, sizeof name);
    return name;
}

HWND WaitForWindow(const Program& program, Wanted wanted) {
    const ULONGLONG end = GetTickCount64() + startTime;
    Search search{program.id, wanted};
    while (!search.found && GetTickCount64() < end && WaitForSingleObject(program.process.Get(), 20) == WAIT_TIMEOUT) {
        EnumWindows(FindShown, reinterpret_cast<LPARAM>(&search));
    }
    return search.found;
}

DWORD FindChild(DWORD parent, const wchar_t* name) {
    const Kernel snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32FirstW(snapshot.Get(), &entry); more; more = Process32NextW(snapshot.Get(), &entry)) {
        if (entry.th32ParentProcessID == parent && _wcsicmp(entry.szExeFile, name) == 0) return entry.th32ProcessID;
    }
    return 0;
}

}  // namespace qvx::soak
