// Archivers as processes: how they start, what goes on while one runs, and what is left of them.
#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>

#include "com/wide_text.h"
#include "common/number_text.h"
#include "controls/backup/system_services_win32.h"
#include "tests/support/error_of.h"
#include "tests/support/files.h"
#include "tests/support/input.h"
#include "tests/support/narrow.h"
#include "win/handles.h"

namespace qvx::test {
namespace {

using Services = backup::SystemServices;

int StartFailure(Services& services, TextView commandLine) {
    const Raised raised = RaisedBy([&] { services.StartArchiver(commandLine); });
    EXPECT_EQ(raised.words.find(u"secret"), Text::npos);
    return raised.number;
}

// This program as one that ends when it is told to.
class Archiver {
  public:
    Archiver() : end_(CreateEventW(nullptr, TRUE, FALSE, Wide(Name()))) {}

    Text CommandLine(int exitCode) const {
        wchar_t program[MAX_PATH] = L"";
        GetModuleFileNameW(nullptr, program, MAX_PATH);
        return u'"' + Text(FromWide(program)) + u"\" --wait-and-end " + Name() + u' ' + IntegerToText(exitCode);
    }
    void End() const { SetEvent(end_.Get()); }

  private:
    static Text Name() { return u"qvx-archiver-" + IntegerToText(GetCurrentProcessId()); }

    UniqueKernelObject end_;
};

TEST(BackupArchiver, WhatCannotBeStartedSaysSo) {
    Services services;
    const Text file = NewTemporaryFile();  // empty, so no program
    EXPECT_EQ(StartFailure(services, u"\"C:\\secret folder\\PkZip.exe\" -& a.qvx"), 53);
    EXPECT_EQ(StartFailure(services, u"C:\\secret\\PkZip.exe a.qvx"), 53);
    EXPECT_NE(StartFailure(services, u"\"" + file + u"\" secret"), 0);
    EXPECT_NE(StartFailure(services, u""), 0);
    EXPECT_EQ(StartFailure(services, TextView(u"cmd.exe\0 /c exit 0", 18)), 53);
    EXPECT_THROW(services.WaitForArchiver(), RunTimeError);
    DeleteFileW(Wide(file));
}

// What a window has been told.
struct Notified {
    std::atomic<int> paints = 0;
    std::atomic<int> input = 0;
};

LRESULT CALLBACK Listen(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR data) {
    auto* told = reinterpret_cast<Notified*>(data);
    if (message == WM_PAINT) ++told->paints;
    if (message == WM_KEYDOWN || message == WM_LBUTTONDOWN || message == WM_COMMAND) ++told->input;
    if (message == WM_APP) return 42;
    return DefSubclassProc(window, message, wParam, lParam);
}

class Window {
  public:
    explicit Window(HWND parent = nullptr) {
        handle_ = CreateWindowExW(0, L"STATIC", L"", (parent ? WS_CHILD | WS_VISIBLE : WS_POPUP) | SS_NOTIFY, 10, 10,
                                  200, 100, parent, nullptr, nullptr, nullptr);
        SetWindowSubclass(handle_, Listen, 1, reinterpret_cast<DWORD_PTR>(&notifications_));
        ShowWindow(handle_, SW_SHOWNA);
        UpdateWindow(handle_);
        MSG message{};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
        notifications_.paints = 0;
        notifications_.input = 0;
    }
    ~Window() { DestroyWindow(handle_); }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    HWND Handle() const { return handle_; }
    const Notified& Heard() const { return notifications_; }

  private:
    HWND handle_ = nullptr;
    Notified notifications_;
};

TEST(BackupArchiver, MeanwhileTheDialogIsPaintedAndTakesNoInput) {
    const Archiver archiver;
    const Window other;
    const Window dialog;
    Services services([&] { return dialog.Handle(); });
    const Window field(dialog.Handle());
    services.StartArchiver(archiver.CommandLine(9));
    PostQuitMessage(5);
    bool answered = false;
    bool painted = false;
    std::thread user([&] {
        PostMessageW(dialog.Handle(), WM_KEYDOWN, VK_RETURN, 0);
        PostMessageW(field.Handle(), WM_LBUTTONDOWN, 0, 0);
        DWORD_PTR answer = 0;
        answered = SendMessageTimeoutW(dialog.Handle(), WM_APP, 0, 0, SMTO_NORMAL, 10000, &answer) && answer == 42;
        InvalidateRect(other.Handle(), nullptr, TRUE);
        painted = true;
        for (const Window* window : {&dialog, &field, &dialog}) {
            const int before = window->Heard().paints;
            InvalidateRect(window->Handle(), nullptr, TRUE);
            painted = painted && WaitFor([&] { return window->Heard().paints > before; }, 10000, false);
        }
        archiver.End();
    });
    const std::uint32_t code = services.WaitForArchiver();
    user.join();
    EXPECT_EQ(code, 9u);
    EXPECT_TRUE(answered);
    EXPECT_TRUE(painted);
    EXPECT_EQ(other.Heard().paints, 0);
    EXPECT_EQ(dialog.Heard().input, 0);
    EXPECT_EQ(field.Heard().input, 0);
    // All of it is still to come, and so is the end.
    EXPECT_EQ(TakeQuit(), 5);
    int posted = 0;
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_KEYDOWN || message.message == WM_LBUTTONDOWN) ++posted;
        DispatchMessageW(&message);
    }
    EXPECT_EQ(posted, 2);
}

TEST(BackupArchiver, InheritsNothingAndNeedsNoDialog) {
    const HWND gone = std::make_unique<Window>()->Handle();
    Services services([gone] { return gone; });
    const Archiver archiver;
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    UniqueKernelObject read;
    UniqueKernelObject write;
    ASSERT_TRUE(CreatePipe(read.Put(), write.Put(), &inherited, 0));
    services.StartArchiver(archiver.CommandLine(3));
    write.Reset();
    // Were the other end in the archiver's hands, too, the pipe would not be broken.
    EXPECT_FALSE(PeekNamedPipe(read.Get(), nullptr, 0, nullptr, nullptr, nullptr));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_BROKEN_PIPE));
    archiver.End();
    EXPECT_EQ(services.WaitForArchiver(), 3u);
}

// The process's open handles, each tried: not every system tells their number.
int Handles() {
    constexpr std::uintptr_t most = 0x4000;
    const UniqueKernelObject fresh(CreateEventW(nullptr, FALSE, FALSE, nullptr));
    EXPECT_LT(reinterpret_cast<std::uintptr_t>(fresh.Get()), most);
    int count = 0;
    for (std::uintptr_t value = 4; value < most; value += 4) {
        DWORD flags = 0;
        if (GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags)) ++count;
    }
    return count;
}

TEST(BackupArchiver, LeavesNoHandleBehind) {
    Services services;
    const auto run = [&](int times) {
        for (int i = 0; i < times; ++i) {
            services.StartArchiver(u"cmd.exe /c exit 0");
            // Every other time nobody waits.
            if (i % 2 != 0) services.WaitForArchiver();
            StartFailure(services, u"C:\\none\\none.exe");
        }
        services.StartArchiver(u"cmd.exe /c exit 0");
        services.WaitForArchiver();
        return Handles();
    };
    const int handles = run(1);
    EXPECT_GT(handles, 0);
    // Not one for each.
    EXPECT_LT(run(20), handles + 8);
}

}  // namespace
}  // namespace qvx::test
