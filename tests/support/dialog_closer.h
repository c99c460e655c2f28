// Closes the library's dialogs where a test has no one to answer them.
#pragma once

#include <windows.h>

#include <string_view>

namespace qvx::test {

// Closes those of this thread as soon as they are shown.
class DialogCloser {
  public:
    DialogCloser() : hook_(SetWindowsHookExW(WH_CBT, &Close, nullptr, GetCurrentThreadId())) {}
    ~DialogCloser() { UnhookWindowsHookEx(hook_); }
    DialogCloser(const DialogCloser&) = delete;
    DialogCloser& operator=(const DialogCloser&) = delete;

  private:
    static LRESULT CALLBACK Close(int code, WPARAM wParam, LPARAM lParam) {
        if (code == HCBT_ACTIVATE) {
            const auto window = reinterpret_cast<HWND>(wParam);
            wchar_t name[32]{};
            GetClassNameW(window, name, 32);
            for (const wchar_t* dialog : {L"QvxMessageBox", L"QvxAbout", L"QvxForm", L"QvxPreview"})
                if (std::wstring_view(name) == dialog) PostMessageW(window, WM_CLOSE, 0, 0);
        }
        return CallNextHookEx(nullptr, code, wParam, lParam);
    }
    HHOOK hook_;
};

}  // namespace qvx::test
