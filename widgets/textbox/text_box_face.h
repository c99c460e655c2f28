// The appearance and the height of a single-line text box.
#pragma once

#include "common/font_spec.h"
#include "common/geometry.h"
#include "common/ole_color.h"
#include "common/text.h"
#include "drawing/surface.h"

namespace qvx {

// The numbers are those of hosts and forms.
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

// Returns the pixels on each side: two for the three-dimensional edge, one for the flat line.
int BorderThickness(const TextBoxLook& look);

// Returns the height in pixels of a box with one line of text.
int TextBoxHeight(const TextBoxLook& look, int lineHeight);

// Paints the whole box, for pictures and printing; in a window, the system paints the box.
void PaintTextBox(Surface& surface, const TextBoxLook& look, TextView text, const Rect& bounds);

}  // namespace qvx
