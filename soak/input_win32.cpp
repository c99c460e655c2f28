#include "soak/input_win32.h"

#include <algorithm>
#include <utility>

#include "com/wide_text.h"
#include "common/keys.h"
#include "common/utf8.h"
#include "soak/action.h"

namespace qvx::soak {

void Input::Send(INPUT input) {
    SendInput(1, &input, sizeof input);
    ++sent_;
}

void Input::SendKey(WORD key, bool down, DWORD flags) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    (flags & KEYEVENTF_UNICODE ? input.ki.wScan : input.ki.wVk) = key;
    input.ki.dwFlags = flags | (down ? 0 : KEYEVENTF_KEYUP);
    Send(input);
}

void Input::SendMouse(DWORD flags, Point place, DWORD data) {
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flags;
    input.mi.dx = place.x;
    input.mi.dy = place.y;
    input.mi.mouseData = data;
    Send(input);
}

void Input::Press(const std::string& name) {
    const KeyPress press = KeyOf(name).value_or(KeyPress{});
    const std::pair<bool, int> held[] = {
        {press.control, keys::control}, {press.shift, keys::shift}, {press.alt, keys::alt}};
    const bool extended = (press.key >= keys::pageUp && press.key <= keys::down) || press.key == keys::insert ||
                          press.key == keys::deleteKey;
    const DWORD flags = extended ? KEYEVENTF_EXTENDEDKEY : 0;
    for (const auto& [down, key] : held) {
        if (down) SendKey(static_cast<WORD>(key), true);
    }
    SendKey(static_cast<WORD>(press.key), true, flags);
    SendKey(static_cast<WORD>(press.key), false, flags);
    for (const auto& [down, key] : held) {
        if (down) SendKey(static_cast<WORD>(key), false);
    }
}

void Input::Type(const std::string& text) {
    for (const char16_t character : DecodeUtf8(text).value_or(Text())) {
        const SHORT key = VkKeyScanW(static_cast<wchar_t>(character));
        if (key == -1 || HIBYTE(key) > 1) {
            SendKey(static_cast<WORD>(character), true, KEYEVENTF_UNICODE);
            SendKey(static_cast<WORD>(character), false, KEYEVENTF_UNICODE);
            continue;
        }
        const bool shift = HIBYTE(key) == 1;
        if (shift) SendKey(keys::shift, true);
        SendKey(LOBYTE(key), true);
        SendKey(LOBYTE(key), false);
        if (shift) SendKey(keys::shift, false);
    }
}

void Input::MoveTo(Point place) {
    const int width = GetSystemMetrics(SM_CXSCREEN);
    const int height = GetSystemMetrics(SM_CYSCREEN);
    SendMouse(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE, {MulDiv(std::clamp(place.x, 0, width - 1), 65536, width) + 1,
                                                        MulDiv(std::clamp(place.y, 0, height - 1), 65536, height) + 1});
}

void Input::Button(DWORD flags) { SendMouse(flags); }

void Input::Wheel(int notches) { SendMouse(MOUSEEVENTF_WHEEL, {}, static_cast<DWORD>(notches * WHEEL_DELTA)); }

}  // namespace qvx::soak
