// SoakWatch.dll: a hook on the message queue brings it into the program under test. It notifies the driver when a
// thread has processed its input, counts the program's resources, and records where the program faults.
#include "soak/watch/watch.h"

#include <algorithm>
#include <cwchar>
#include <iterator>

#include "soak/watch/handle_counts.h"

namespace {

using namespace qvx::soak;

Shared* shared = nullptr;
HANDLE idle = nullptr;
UINT ask = 0;
UINT_PTR timer = 0;
LONG asked = 0;

// Menu handles have a small number in their low word, and the system identifies a menu by that alone.
long CountMenus() {
    long count = 0;
    for (ULONG_PTR handle = 0x20; handle < 0x10000; handle += 2)
        count += IsMenu(reinterpret_cast<HMENU>(handle)) ? 1 : 0;
    return count;
}

void Count() {
    shared->windows = qvx::test::ThreadWindows();
    shared->graphics = qvx::test::GdiHandles();
    shared->menus = CountMenus();
}

// Nothing here allocates, since the heap may be damaged.
LONG CALLBACK OnException(EXCEPTION_POINTERS* exception) {
    const DWORD code = exception->ExceptionRecord->ExceptionCode;
    const bool fatal = code == EXCEPTION_ACCESS_VIOLATION || code == EXCEPTION_STACK_OVERFLOW ||
                       code == EXCEPTION_ILLEGAL_INSTRUCTION || code == EXCEPTION_PRIV_INSTRUCTION ||
                       code == EXCEPTION_INT_DIVIDE_BY_ZERO || code == 0xC0000374;
    if (!fatal || !shared) return EXCEPTION_CONTINUE_SEARCH;
    Fault& fault = shared->fault;
    fault = {};
    fault.code = code;
    void* frames[maximumFrames] = {exception->ExceptionRecord->ExceptionAddress};
    CaptureStackBackTrace(0, maximumFrames - 1, frames + 1, nullptr);
    for (int i = 0; i < maximumFrames && frames[i]; ++i) {
        fault.frames[i] = reinterpret_cast<ULONG_PTR>(frames[i]);
        HMODULE module = nullptr;
        wchar_t path[MAX_PATH] = L"";
        if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                                static_cast<const wchar_t*>(frames[i]), &module)) {
            continue;
        }
        GetModuleFileNameW(module, path, MAX_PATH);
        const wchar_t* name = std::wcsrchr(path, L'\\');
        std::wcsncpy(fault.modules[i], name ? name + 1 : path, std::size(fault.modules[i]) - 1);
        fault.bases[i] = reinterpret_cast<ULONG_PTR>(module);
    }
    return EXCEPTION_CONTINUE_SEARCH;
}

// Limits the field of a system dialog as Windows does. Wine's has no limit, and its file dialog joins a name of any
// length to the folder in a buffer of MAX_PATH characters.
void LimitSystemField(HWND field) {
    constexpr WPARAM longestName = 200;
    wchar_t name[16] = L"";
    if (!GetClassNameW(field, name, static_cast<int>(std::size(name))) || std::wcscmp(name, L"Edit") != 0) return;
    const HWND dialog = GetAncestor(field, GA_ROOT);
    if (!GetClassNameW(dialog, name, static_cast<int>(std::size(name))) || std::wcscmp(name, L"#32770") != 0) return;
    SendMessageW(field, EM_SETLIMITTEXT, longestName, 0);
}

}  // namespace

// A timer message arrives only when there is nothing else to do, input and painting included.
extern "C" __declspec(dllexport) LRESULT CALLBACK WatchMessages(int code, WPARAM wParam, LPARAM lParam) {
    auto* message = reinterpret_cast<MSG*>(lParam);
    if (code == HC_ACTION && wParam == PM_REMOVE && message->message == WM_KEYDOWN) LimitSystemField(message->hwnd);
    if (code == HC_ACTION && wParam == PM_REMOVE && shared && !message->hwnd) {
        if (message->message == ask) {
            asked = static_cast<LONG>(message->wParam);
            if (message->lParam) Count();
            timer = SetTimer(nullptr, timer, USER_TIMER_MINIMUM, nullptr);
            message->message = WM_NULL;
        } else if (message->message == WM_TIMER && timer && message->wParam == timer) {
            KillTimer(nullptr, timer);
            timer = 0;
            shared->answered = asked;
            SetEvent(idle);
            message->message = WM_NULL;
        }
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void*) {
    if (reason != DLL_PROCESS_ATTACH) return TRUE;
    ask = RegisterWindowMessageW(askName);
    idle = OpenEventW(EVENT_MODIFY_STATE, FALSE, idleName);
    if (const HANDLE mapping = OpenFileMappingW(FILE_MAP_WRITE, FALSE, sharedName)) {
        shared = static_cast<Shared*>(MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 0, sizeof(Shared)));
        AddVectoredExceptionHandler(1, OnException);
    }
    return TRUE;
}
