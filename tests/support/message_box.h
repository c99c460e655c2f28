// The library's message box as a person in front of the screen sees it.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include "tests/support/input.h"

namespace qvx::test {

inline HWND FindBox() { return FindWindowW(L"QvxMessageBox", nullptr); }

// Called from the person's thread: the box, once it takes keys; null after some seconds without one, which is a
// failure.
inline HWND WaitForBox() { return WaitForWindow(L"QvxMessageBox"); }

// Returns a button; they are numbered in the order of creation: OK, then Cancel.
inline HWND ButtonOf(HWND box, int number) { return GetDlgItem(box, number); }

}  // namespace qvx::test
