// Starting an archiver, and waiting for its end.
#include <windows.h>

#include "com/wide_text.h"
#include "controls/backup/file_rules.h"
#include "controls/backup/system_services_win32.h"
#include "win/queued_messages.h"

namespace qvx::backup {

namespace {

// Below the time after which the system considers a thread that does not process its messages as hung, and replaces its
// windows with ghost windows.
constexpr DWORD longestBlindness = 1000;  // milliseconds

// Paints pending updates of a window and its children, and handles messages that others send.
void Paint(HWND window, QueuedMessages& queue) {
    // If the window has been destroyed, only messages without a window are read: they contain nothing to paint.
    const HWND painted = IsWindow(window) ? window : reinterpret_cast<HWND>(-1);
    MSG message{};
    while (queue.Take(message, painted, WM_PAINT, WM_PAINT)) DispatchMessageW(&message);
}

}  // namespace

void SystemServices::StartArchiver(TextView commandLine) {
    if (commandLine.find(u'\0') != TextView::npos) throw StartError(ERROR_INVALID_NAME);
    Text writable(commandLine);  // the call may modify it
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESHOWWINDOW;
    start.wShowWindow = SW_SHOWNORMAL;
    PROCESS_INFORMATION process{};
    // The archiver gets a console of its own, since its messages and questions need a window even where the host itself
    // has a console.
    if (!CreateProcessW(nullptr, WideBuffer(writable), nullptr, nullptr, FALSE, CREATE_NEW_CONSOLE, nullptr, nullptr,
                        &start, &process)) {
        throw StartError(GetLastError());
    }
    const UniqueKernelObject thread(process.hThread);
    archiver_.Reset(process.hProcess);
}

std::uint32_t SystemServices::WaitForArchiver() {
    const UniqueKernelObject process = std::move(archiver_);
    if (!process) throw RunTimeError(errors::invalidProcedureCall, u"Invalid procedure call or argument");
    QueuedMessages queue;
    const HANDLE handle = process.Get();
    DWORD result = WAIT_TIMEOUT;
    while (result != WAIT_OBJECT_0) {
        Paint(dialog_(), queue);
        result = MsgWaitForMultipleObjects(1, &handle, FALSE, longestBlindness, QS_PAINT | QS_SENDMESSAGE);
        if (result == WAIT_FAILED) break;
    }
    DWORD exitCode = 0;
    if (result == WAIT_FAILED || !GetExitCodeProcess(handle, &exitCode)) throw FileError(GetLastError());
    return exitCode;
}

}  // namespace qvx::backup
