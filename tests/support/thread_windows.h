// The top-level windows of the test's own thread.
#pragma once

#include <windows.h>

#include <utility>
#include <vector>

namespace qvx::test {

// Collects the windows of one class, regardless of the case of its name. It is not a lambda, because the system's
// callbacks on x86 have a calling convention that lambdas lack.
inline BOOL CALLBACK CollectOfClass(HWND window, LPARAM parameter) {
    auto& [className, found] = *reinterpret_cast<std::pair<const wchar_t*, std::vector<HWND>>*>(parameter);
    wchar_t name[64]{};
    GetClassNameW(window, name, 64);
    if (lstrcmpiW(name, className) == 0) found.push_back(window);
    return TRUE;
}

inline std::vector<HWND> ThreadWindows(const wchar_t* className) {
    std::pair<const wchar_t*, std::vector<HWND>> search{className, {}};
    EnumThreadWindows(GetCurrentThreadId(), CollectOfClass, reinterpret_cast<LPARAM>(&search));
    return search.second;
}

}  // namespace qvx::test
