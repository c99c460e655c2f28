// Virtual-key codes and the shift state of key events, as the system and the hosts number them.
#pragma once

namespace qvx::keys {

constexpr int backspace = 8;
constexpr int tab = 9;
constexpr int enter = 13;
constexpr int shift = 16;
constexpr int control = 17;
constexpr int alt = 18;
constexpr int escape = 27;
constexpr int space = 32;
constexpr int pageUp = 33;
constexpr int pageDown = 34;
constexpr int end = 35;
constexpr int home = 36;
constexpr int left = 37;
constexpr int up = 38;
constexpr int right = 39;
constexpr int down = 40;
constexpr int insert = 45;
constexpr int deleteKey = 46;
constexpr int f1 = 112;
constexpr int f2 = 113;
constexpr int f3 = 114;
constexpr int f4 = 115;
constexpr int f8 = 119;
constexpr int f24 = 135;

// Bits of an event's Shift argument.
constexpr int shiftMask = 1;
constexpr int controlMask = 2;
constexpr int altMask = 4;

}  // namespace qvx::keys
