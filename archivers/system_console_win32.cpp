#include <windows.h>

#include <atomic>

#include "archivers/system_files.h"
#include "com/wide_text.h"
#include "common/number_text.h"
#include "common/utf8.h"

namespace qvx::archivers {

namespace {

std::atomic<bool> isStopped = false;

BOOL WINAPI OnControl(DWORD kind) {
    isStopped = true;
    // For a closed window, the system ends the program when this returns: the wait leaves time to remove unfinished
    // files, within the limit that the system grants.
    if (kind != CTRL_C_EVENT && kind != CTRL_BREAK_EVENT) Sleep(4000);
    return TRUE;
}

bool IsConsole(HANDLE handle) {
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) != 0;
}

// A console displays any script; a file or a pipe gets UTF-8.
void Print(DWORD stream, const Text& text) {
    const HANDLE handle = GetStdHandle(stream);
    DWORD written = 0;
    if (IsConsole(handle)) {
        WriteConsoleW(handle, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    } else if (handle && handle != INVALID_HANDLE_VALUE) {
        const std::string bytes = EncodeUtf8(text);
        WriteFile(handle, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    }
}

}  // namespace

SystemConsole::SystemConsole() : isTerminal_(IsConsole(GetStdHandle(STD_OUTPUT_HANDLE))) {
    SetConsoleCtrlHandler(OnControl, TRUE);
}

void SystemConsole::Say(const Text& line) {
    EndProgress();
    Print(STD_OUTPUT_HANDLE, line + u"\r\n");
}

void SystemConsole::Complain(const Text& line) {
    EndProgress();
    Print(STD_ERROR_HANDLE, line + u"\r\n");
}

void SystemConsole::Progress(const Text& name, int percent) {
    if (!isTerminal_ || (percent == shownPercent_ && name == shownName_)) return;
    if (name != shownName_) EndProgress();
    shownName_ = name;
    shownPercent_ = percent;
    Print(STD_OUTPUT_HANDLE, u"\r" + name + u": " + IntegerToText(percent) + u"%");
}

void SystemConsole::EndProgress() {
    if (shownPercent_ < 0) return;
    shownPercent_ = -1;
    shownName_.clear();
    Print(STD_OUTPUT_HANDLE, u"\r\n");
}

void SystemConsole::AskForEnter(const Text& question) {
    Say(question);
    const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
    for (;;) {
        char byte = 0;
        DWORD count = 0;
        const bool isRead = ReadFile(input, &byte, 1, &count, nullptr) != 0;
        // The signal may arrive a moment after the read was interrupted.
        if (!isRead || count == 0) Sleep(100);
        if (isStopped) throw ArchiveError(ExitCode::stopped);
        if (!isRead || count == 0) throw ArchiveError(ExitCode::noNextDisk);
        if (byte == '\n') return;
    }
}

bool SystemConsole::IsStopped() { return isStopped; }

}  // namespace qvx::archivers
