// The appearance of a rounded two-state button.
#pragma once

#include "widgets/button/push_look.h"

namespace qvx::buttons {

struct RButtonLook : PushLook {
    RButtonLook() { borderColor = Rgb(0x80, 0x80, 0x80); }

    // The colours of the two outlines while the mouse is over the button, and while it is held down.
    OleColor upTopColor = colors::buttonHighlight;
    OleColor upBottomColor = colors::darkShadow3d;
    OleColor downTopColor = colors::darkShadow3d;
    OleColor downBottomColor = colors::buttonHighlight;
    OleColor maskColor = 0;  // of the focus rectangle's dots
};

enum class RButtonState { idle, raised, held };

// Returns the caption of a new button: "Button" and the last character of the name that its host has given it.
Text DefaultRButtonCaption(TextView displayName);

// Returns the full width and height of the quarter ellipses at the corners, in pixels; the window's shape has the same.
constexpr Size RButtonCorner(Dpi dpi) { return {Scaled(10, dpi.x), Scaled(10, dpi.y)}; }

// Returns the position of the focus rectangle: around a caption of that width, in the middle of the face. `textHeight`
// may have a fraction; coordinates are rounded half to even. All values are in pixels.
Rect RButtonFocusArea(Size face, int textWidth, double textHeight);

// Draws the whole picture, including the focus rectangle while the button is `active` on its form and FocusRect is set.
void DrawRButton(Surface& surface, const RButtonLook& look, RButtonState state, bool active);

}  // namespace qvx::buttons
