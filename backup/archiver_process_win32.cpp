// The archiver that was started last, and the wait for its end.
#include <windows.h>

#include "backup/file_rules.h"
#include "backup/system_services_win32.h"
#include "com/text.h"

namespace qvx::backup {

namespace {

// Under the time after which the system takes a thread that does not look at its messages for hung, and covers its
// windows with a ghost.
constexpr DWORD longestBlindness = 1000;  // milliseconds

// Paints what is due in a window and those in it, and lets messages in that others send. A request to end the thread
// comes with any look into the queue; it is kept for afterwards, since it would come with the next one again.
void Paint(HWND window, std::optional<int>& quit) {
    // Where the window is gone, the thread's messages to no window: there is nothing to paint among them.
    const HWND painted = IsWindow(window) ? window : reinterpret_cast<HWND>(-1);
    MSG message{};
    while (PeekMessageW(&message, painted, WM_PAINT, WM_PAINT, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            quit = static_cast<int>(message.wParam);
        } else {
            DispatchMessageW(&message);
        }
    }
}

}  // namespace

void SystemServices::StartArchiver(TextView commandLine) {
    if (commandLine.find(u'\0') != TextView::npos) throw StartError(ERROR_INVALID_NAME);
    Text writable(commandLine);  // the call may write into it
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESHOWWINDOW;
    start.wShowWindow = SW_SHOWNORMAL;
    PROCESS_INFORMATION process{};
    // A console of its own: what an archiver says and asks needs a window even where the host itself has a console.
    if (!CreateProcessW(nullptr, WideBuffer(writable), nullptr, nullptr, FALSE, CREATE_NEW_CONSOLE, nullptr, nullptr,
                        &start, &process)) {
        throw StartError(GetLastError());
    }
    const UniqueKernelObject thread(process.hThread);
    archiver_.Reset(process.hProcess);
}

std::uint32_t SystemServices::WaitForArchiver(HWND dialog) {
    const UniqueKernelObject process = std::move(archiver_);
    if (!process) throw RunTimeError(errors::invalidProcedureCall, u"Invalid procedure call or argument");
    std::optional<int> quit;
    const HANDLE handle = process.Get();
    DWORD result = WAIT_TIMEOUT;
    while (result != WAIT_OBJECT_0) {
        Paint(dialog, quit);
        result = MsgWaitForMultipleObjects(1, &handle, FALSE, longestBlindness, QS_PAINT | QS_SENDMESSAGE);
        if (result == WAIT_FAILED) break;
    }
    if (quit) PostQuitMessage(*quit);
    DWORD exitCode = 0;
    if (result == WAIT_FAILED || !GetExitCodeProcess(handle, &exitCode)) throw FileError(GetLastError());
    return exitCode;
}

}  // namespace qvx::backup
