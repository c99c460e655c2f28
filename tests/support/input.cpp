#include "tests/support/input.h"

#include <gtest/gtest.h>

namespace qvx::test {

namespace {

void Send(INPUT input) { SendInput(1, &input, sizeof input); }

INPUT KeyInput(int key, DWORD flags) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = static_cast<WORD>(key);
    input.ki.dwFlags = flags;
    return input;
}

void MouseInput(DWORD flags) {
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flags;
    Send(input);
}

}  // namespace

bool WaitFor(const std::function<bool()>& holds, int milliseconds, bool pump) {
    const ULONGLONG end = GetTickCount64() + static_cast<ULONGLONG>(milliseconds);
    while (!holds()) {
        if (GetTickCount64() > end) return false;
        MSG message;
        while (pump && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
        Sleep(5);
    }
    return true;
}

void Settle(int milliseconds) {
    WaitFor([] { return false; }, milliseconds);
}

std::optional<int> TakeQuit() {
    MSG message;
    if (!PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE)) return std::nullopt;
    return static_cast<int>(message.wParam);
}

void KeyDown(int key) { Send(KeyInput(key, 0)); }
void KeyUp(int key) { Send(KeyInput(key, KEYEVENTF_KEYUP)); }

void TypeKey(int key, const std::initializer_list<int>& modifiers) {
    for (const int modifier : modifiers) KeyDown(modifier);
    KeyDown(key);
    KeyUp(key);
    for (const int modifier : modifiers) KeyUp(modifier);
}

void TypeKeys(const char* characters) {
    for (; *characters; ++characters) {
        const SHORT key = VkKeyScanA(*characters);
        const bool shifted = (HIBYTE(key) & 1) != 0;
        TypeKey(LOBYTE(key), shifted ? std::initializer_list<int>{VK_SHIFT} : std::initializer_list<int>{});
    }
}

HWND FocusOf(HWND window) {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &info);
    return info.hwndFocus;
}

void RepeatAndRelease(HWND window, int key) {
    constexpr LPARAM held = static_cast<LPARAM>(KF_REPEAT) << 16 | 1;
    constexpr LPARAM up = static_cast<LPARAM>(KF_UP) << 16;
    for (int i = 0; i < 3; ++i) {
        PostMessageW(FocusOf(window), WM_KEYDOWN, static_cast<WPARAM>(key), held);
        Sleep(60);
    }
    PostMessageW(FocusOf(window), WM_KEYUP, static_cast<WPARAM>(key), held | up);
    Sleep(200);
}

void MoveMouseTo(POINT place) {
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE;
    input.mi.dx = MulDiv(place.x, 65536, GetSystemMetrics(SM_CXSCREEN)) + 1;
    input.mi.dy = MulDiv(place.y, 65536, GetSystemMetrics(SM_CYSCREEN)) + 1;
    Send(input);
}

RECT AreaOf(HWND window) {
    RECT area{};
    GetWindowRect(window, &area);
    return area;
}

POINT CenterOf(HWND window) {
    const RECT bounds = AreaOf(window);
    return {(bounds.left + bounds.right) / 2, (bounds.top + bounds.bottom) / 2};
}

void LeftButton(bool down) { MouseInput(down ? MOUSEEVENTF_LEFTDOWN : MOUSEEVENTF_LEFTUP); }

void ClickOn(HWND window) {
    MoveMouseTo(CenterOf(window));
    LeftButton(true);
    LeftButton(false);
}

bool BringToFront(HWND window) {
    ShowWindow(window, SW_SHOW);
    SetForegroundWindow(window);
    return WaitFor([&] { return GetForegroundWindow() == window; });
}

HWND WaitForWindow(const wchar_t* windowClass) {
    HWND found = nullptr;
    EXPECT_TRUE(WaitFor(
        [&] {
            found = FindWindowW(windowClass, nullptr);
            return found && IsWindowVisible(found) && GetForegroundWindow() == found;
        },
        8000, false));
    // Nobody is quicker. A window manager that still confirms the activation would call a press off.
    Sleep(200);
    return found;
}

}  // namespace qvx::test
