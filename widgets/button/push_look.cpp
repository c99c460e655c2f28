#include "widgets/button/push_look.h"

#include "common/text_direction.h"

namespace qvx::buttons {

void DrawCaption(Surface& surface, const PushLook& look, const Rect& area, OleColor color) {
    constexpr unsigned format = text_format::center | text_format::middle | text_format::singleLine;
    const unsigned direction = ReadsRightToLeft(look.caption, false) ? text_format::rightToLeft : 0;
    surface.DrawLabel(look.caption, area, look.font, color, format | direction);
}

}  // namespace qvx::buttons
