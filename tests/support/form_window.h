// The library's own forms (the backup dialog, the password prompt) as a person in front of the screen sees them.
// Functions are called from the person's thread unless noted otherwise.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "tests/support/input.h"

namespace qvx::test {

// Returns the visible form with that caption, null for any caption; null without one.
inline HWND FindForm(const wchar_t* caption) {
    for (HWND form = nullptr; (form = FindWindowExW(nullptr, form, L"QvxForm", caption)) != nullptr;) {
        if (IsWindowVisible(form)) return form;
    }
    return nullptr;
}

// Returns the form once it takes keys; null after eight seconds without one, which is a failure.
inline HWND WaitForForm(const wchar_t* caption) {
    HWND form = nullptr;
    EXPECT_TRUE(WaitFor(
        [&] {
            form = FindForm(caption);
            return form && GetForegroundWindow() == form;
        },
        8000, false))
        << "no form in front";
    Sleep(200);  // as for the message box
    return form;
}

// Returns the form's children of a class, in tab order.
inline std::vector<HWND> ChildrenOf(HWND form, const wchar_t* className) {
    std::vector<HWND> found;
    for (HWND child = nullptr; (child = FindWindowExW(form, child, className, nullptr)) != nullptr;) {
        found.push_back(child);
    }
    return found;
}

// Types characters, independently of the keyboard layout.
inline void TypeText(const wchar_t* text) {
    for (; *text; ++text) {
        for (const DWORD up : {DWORD{0}, static_cast<DWORD>(KEYEVENTF_KEYUP)}) {
            INPUT input{};
            input.type = INPUT_KEYBOARD;
            input.ki.wScan = static_cast<WORD>(*text);
            input.ki.dwFlags = KEYEVENTF_UNICODE | up;
            SendInput(1, &input, sizeof input);
        }
    }
    Sleep(100);
}

// A person who leaves no form open, so that a lost key fails one test instead of blocking all of them.
class FormPerson : public Person {
  public:
    explicit FormPerson(std::function<void()> acts)
        : Person([acts = std::move(acts)] {
              acts();
              if (WaitFor([] { return !FindForm(nullptr); }, 5000, false)) return;
              ADD_FAILURE() << "a form is still open";
              while (const HWND form = FindForm(nullptr)) {
                  PostMessageW(form, WM_CLOSE, 0, 0);
                  Sleep(100);
              }
          }) {}
};

inline std::wstring TextOf(HWND window) {
    wchar_t text[300]{};
    SendMessageW(window, WM_GETTEXT, 300, reinterpret_cast<LPARAM>(text));
    return text;
}

}  // namespace qvx::test
