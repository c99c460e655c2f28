#include <windows.h>

#include "common/key_strokes.h"

namespace qvx {

void SendKey(int key, int modifier) {
    for (const KeyStroke& stroke : KeyStrokes(key, modifier)) {
        keybd_event(static_cast<BYTE>(stroke.key), 0, stroke.up ? KEYEVENTF_KEYUP : 0, 0);
    }
}

}  // namespace qvx
