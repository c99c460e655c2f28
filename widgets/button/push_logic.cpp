#include "widgets/button/push_logic.h"

#include "common/keys.h"

namespace qvx::buttons {

bool MovesFocus(int key, int shift) { return shift == 0 && (key == keys::left || key == keys::right); }

ButtonActions FocusMove(int key, int shift) {
    if (!MovesFocus(key, shift)) {
        return {};
    }
    return {key == keys::left ? ButtonAction::sendShiftTab : ButtonAction::sendTab};
}

}  // namespace qvx::buttons
