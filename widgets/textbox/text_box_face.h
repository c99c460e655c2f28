// How a single-line text box looks, and how high it is.
#pragma once

#include "common/font_spec.h"
#include "common/geometry.h"
#include "common/ole_color.h"
#include "common/text.h"
#include "drawing/surface.h"

namespace qvx {

// Numbered as hosts and forms have them.
enum class TextBorder { none = 0, fixedSingle = 1, last = fixedSingle };
enum class TextAlign { left = 0, right = 1, center = 2, last = center };
enum class TextDepth { flat = 0, threeD = 1, last = threeD };

struct TextBoxLook {
    FontSpec font;
    OleColor backColor = colors::windowBackground;
    OleColor foreColor = colors::windowText;
    TextBorder border = TextBorder::fixedSingle;
    TextAlign align = TextAlign::left;
    TextDepth depth = TextDepth::threeD;
    bool enabled = true;
};

// Pixels, each side: two for the three-dimensional edge, one for the flat line.
int BorderThickness(const TextBoxLook& look);

// The height in pixels that one line of text gives the box.
int TextBoxHeight(const TextBoxLook& look, int lineHeight);

// The whole box, for pictures and printing; a box in a window is the system's.
void PaintTextBox(Surface& surface, const TextBoxLook& look, TextView text, const Rect& bounds);

}  // namespace qvx
