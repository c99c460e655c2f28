#include <windows.h>

#include <gtest/gtest.h>
#include <objbase.h>

#include <cstdlib>
#include <cstring>

#include "tests/control/golden.h"

namespace {

// The program itself stands for one that others start: it waits for an event and ends with a code.
int WaitAndEnd(const char* event, const char* code) {
    const HANDLE end = OpenEventA(SYNCHRONIZE, FALSE, event);
    return end && WaitForSingleObject(end, 60000) == WAIT_OBJECT_0 ? std::atoi(code) : 255;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 4 && std::strcmp(argv[1], "--wait-and-end") == 0) return WaitAndEnd(argv[2], argv[3]);
    // A crash must end the program, not wait for somebody to close a dialog.
    SetErrorMode(SEM_NOGPFAULTERRORBOX | SEM_FAILCRITICALERRORS);
    ::testing::InitGoogleTest(&argc, argv);
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--update-golden") == 0) qvx::test::updateGolden = true;
    }
    if (FAILED(OleInitialize(nullptr))) return 2;
    const int result = RUN_ALL_TESTS();
    OleUninitialize();
    return result;
}
