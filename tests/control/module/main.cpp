#include <windows.h>

#include <gtest/gtest.h>
#include <ole2.h>

int main(int argc, char** argv) {
    // A crash must end the program, not wait for somebody to close a dialog.
    SetErrorMode(SEM_NOGPFAULTERRORBOX | SEM_FAILCRITICALERRORS);
    ::testing::InitGoogleTest(&argc, argv);
    if (FAILED(OleInitialize(nullptr))) return 2;
    const int result = RUN_ALL_TESTS();
    OleUninitialize();
    return result;
}
