#include "widgets/textbox/text_box_face.h"

namespace qvx {
namespace {

// The distance between the border and the text, in pixels, as in the system's edit control.
constexpr int innerMargin = 1;
constexpr int sideMargin = 2;

unsigned Alignment(TextAlign align) {
    if (align == TextAlign::right) return text_format::right;
    return align == TextAlign::center ? text_format::center : text_format::left;
}

}  // namespace

int BorderThickness(const TextBoxLook& look) {
    if (look.border == TextBorder::none) return 0;
    return look.depth == TextDepth::threeD ? 2 : 1;
}

int TextBoxHeight(const TextBoxLook& look, int lineHeight) {
    return lineHeight + 2 * (BorderThickness(look) + innerMargin);
}

void PaintTextBox(Surface& surface, const TextBoxLook& look, TextView text, const Rect& bounds) {
    surface.FillRect(bounds, look.backColor);
    const int border = BorderThickness(look);
    if (border == 2) surface.DrawEdge(bounds, edge::sunken, edge::allSides);
    if (border == 1) surface.FrameRect(bounds, colors::windowFrame);
    Rect inner = bounds;
    inner.left += border;
    inner.top += border;
    inner.right -= border;
    inner.bottom -= border;
    const ClipScope clip(surface, inner);
    inner.left += sideMargin;
    inner.right -= sideMargin;
    inner.top += innerMargin;
    surface.DrawLabel(text, inner, look.font, look.enabled ? look.foreColor : colors::grayText,
                      Alignment(look.align) | text_format::singleLine | text_format::noPrefix);
}

}  // namespace qvx
