#include <windows.h>

#include <gtest/gtest.h>
#include <objbase.h>

#include <cstring>

#include "tests/control/golden.h"

int main(int argc, char** argv) {
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
