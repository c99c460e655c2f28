// A window for dialogs to open over, in front of all others while a test lasts.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include "tests/support/input.h"

namespace qvx::test {

class OwnedDialogTest : public ::testing::Test {
  protected:
    void SetUp() override {
        owner_ = CreateWindowExW(0, L"STATIC", L"Owner", WS_OVERLAPPEDWINDOW, 100, 100, 600, 400, nullptr, nullptr,
                                 nullptr, nullptr);
        ASSERT_TRUE(BringToFront(owner_));
    }
    void TearDown() override {
        if (IsWindow(owner_)) DestroyWindow(owner_);
        WaitFor([] { return false; }, 30);
    }
    // Window managers need a moment to bring the owner to the front again, and a dialog that opens meanwhile may stay
    // below it.
    void WaitForOwner() const {
        if (IsWindow(owner_)) WaitFor([&] { return GetForegroundWindow() == owner_; }, 1000);
    }

    HWND owner_ = nullptr;
};

}  // namespace qvx::test
