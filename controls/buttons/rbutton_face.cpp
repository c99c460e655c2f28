#include "controls/buttons/rbutton_face.h"

#include "common/number_text.h"

namespace qvx::buttons {

namespace {

// The distance by which the text rectangle's corner moves while the button is held down, at 96 dots per inch. The
// opposite corner stays, so that the caption in the middle moves by half of this.
constexpr int heldOffset = 2;

int Rounded(double value) { return static_cast<int>(RoundHalfEven(value)); }

// The second outline, one pixel up and to the left, leaves the first one's colour on the top and left edges.
void DrawOutlines(Surface& surface, const Rect& face, Size corner, OleColor top, OleColor bottom) {
    surface.RoundRect(face, corner, top);
    surface.RoundRect(face.Offset(-1, -1), corner, bottom);
}

void DrawRButtonFocus(Surface& surface, const RButtonLook& look) {
    const Dpi dpi = surface.Resolution();
    // The width is that of the caption as it is written, including "&".
    const int width = surface.MeasureText(look.caption, look.font, 0, text_format::noPrefix).width;
    // The height uses the horizontal resolution too.
    const double height = static_cast<double>(surface.LineHeight(look.font)) * dpi.x / dpi.y;
    surface.DrawFocusRect(RButtonFocusArea({look.face.Width(), look.face.Height()}, width, height), look.maskColor);
}

}  // namespace

Text DefaultRButtonCaption(TextView displayName) {
    Text caption = u"Button";
    if (!displayName.empty()) {
        caption += displayName.back();
    }
    return caption;
}

Rect RButtonFocusArea(Size face, int textWidth, double textHeight) {
    Rect area;
    area.left = Rounded((face.width - textWidth) / 2.0 - 1);
    area.top = Rounded((face.height - textHeight) / 2.0);
    area.right = area.left + textWidth + 2;
    area.bottom = Rounded(area.top + textHeight);
    return area;
}

void DrawRButton(Surface& surface, const RButtonLook& look, RButtonState state, bool active) {
    const Dpi dpi = surface.Resolution();
    const Rect& face = look.face;
    const Size corner = RButtonCorner(dpi);
    surface.FillRect(face, look.backColor);
    Rect text = face;
    if (state == RButtonState::held) {
        text.left += Scaled(heldOffset, dpi.x);
        text.top += Scaled(heldOffset, dpi.y);
    }
    DrawCaption(surface, look, text, look.enabled ? look.foreColor : colors::buttonShadow);
    surface.RoundRect({face.left, face.top, face.right - 1, face.bottom - 1}, corner, look.borderColor);
    if (active && look.focusRect) {
        DrawRButtonFocus(surface, look);
    }
    if (state == RButtonState::raised) {
        DrawOutlines(surface, face, corner, look.upTopColor, look.upBottomColor);
    } else if (state == RButtonState::held) {
        DrawOutlines(surface, face, corner, look.downTopColor, look.downBottomColor);
    }
}

}  // namespace qvx::buttons
