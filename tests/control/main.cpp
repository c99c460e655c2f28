#include <windows.h>

#include <gtest/gtest.h>
#include <objbase.h>
#include <tlhelp32.h>

#include <cstdlib>
#include <cstring>
#include <set>

#include "tests/control/golden.h"
#include "win/handles.h"

namespace {

// The program itself stands for one that others start: it waits for an event and ends with a code.
int WaitAndEnd(const char* event, const char* code) {
    const HANDLE end = OpenEventA(SYNCHRONIZE, FALSE, event);
    return end && WaitForSingleObject(end, 60000) == WAIT_OBJECT_0 ? std::atoi(code) : 255;
}

// A console outlives the program that it was opened for, and its window comes to the front even later. Each test
// therefore ends only when the consoles of what it started are gone: the next test's keys would go to them.
class ConsolesEndWithTheirTest : public ::testing::EmptyTestEventListener {
    using Processes = std::set<DWORD>;

    static Processes Consoles() {
        Processes found;
        const qvx::UniqueKernelObject snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
        PROCESSENTRY32W process{};
        process.dwSize = sizeof process;
        for (BOOL more = Process32FirstW(snapshot.Get(), &process); more;
             more = Process32NextW(snapshot.Get(), &process)) {
            if (lstrcmpiW(process.szExeFile, L"conhost.exe") == 0) found.insert(process.th32ProcessID);
        }
        return found;
    }
    bool OneIsLeft() const {
        for (const DWORD console : Consoles()) {
            if (before_.count(console) == 0) return true;
        }
        return false;
    }

    void OnTestStart(const ::testing::TestInfo&) override { before_ = Consoles(); }
    void OnTestEnd(const ::testing::TestInfo&) override {
        constexpr ULONGLONG longest = 10000;
        const ULONGLONG end = GetTickCount64() + longest;
        while (OneIsLeft() && GetTickCount64() < end) Sleep(5);
        EXPECT_FALSE(OneIsLeft()) << "a console is still open";
    }

    Processes before_;
};

}  // namespace

int main(int argc, char** argv) {
    if (argc == 4 && std::strcmp(argv[1], "--wait-and-end") == 0) return WaitAndEnd(argv[2], argv[3]);
    // A crash must end the program, not wait for somebody to close a dialog.
    SetErrorMode(SEM_NOGPFAULTERRORBOX | SEM_FAILCRITICALERRORS);
    ::testing::InitGoogleTest(&argc, argv);
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--update-golden") == 0) qvx::test::updateGolden = true;
    }
    ::testing::UnitTest::GetInstance()->listeners().Append(new ConsolesEndWithTheirTest);
    if (FAILED(OleInitialize(nullptr))) return 2;
    const int result = RUN_ALL_TESTS();
    OleUninitialize();
    return result;
}
