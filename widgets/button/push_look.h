// The common parts of the appearance of the library's push buttons.
#pragma once

#include "common/font_spec.h"
#include "common/geometry.h"
#include "common/ole_color.h"
#include "common/text.h"
#include "drawing/surface.h"

namespace qvx::buttons {

struct PushLook {
    Text caption;
    FontSpec font;
    OleColor foreColor = colors::buttonText;
    OleColor backColor = colors::buttonFace;
    OleColor borderColor = colors::buttonFace;
    bool focusRect = true;
    bool enabled = true;
    Rect face;  // pixels, from (0, 0)
};

// Draws the caption on one line in the middle of the area, with the access key underlined. A caption in a script that
// is written from right to left is laid out in that direction.
void DrawCaption(Surface& surface, const PushLook& look, const Rect& area, OleColor color);

}  // namespace qvx::buttons
