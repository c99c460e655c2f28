#include "controls/menus/menu_item.h"

#include <algorithm>
#include <cmath>

#include "common/caption.h"
#include "controls/menus/menu_text.h"

namespace qvx::menus {

namespace {

// All at 96 dots per inch.
constexpr int pictureSize = 16;
constexpr int pictureMargin = 3;  // between the picture and the edges of its column, frame included
constexpr int labelGap = 5;       // between the column and the label
constexpr int keysGap = 16;       // between the label and the keys, at least
constexpr int farMargin = 16;     // after the keys: as far from the edge as the system's arrow extends
constexpr int lineMargin = 3;     // above and below the text
constexpr int glyphSize = 7;      // of the check mark and the dot

// Where the contrast of grey text on a selected item is lower than this, the item is drawn without the selection's
// background.
constexpr double leastContrast = 1.8;

double Brightness(OleColor color) {
    const auto part = [](OleColor value) {
        const double v = (value & 0xFF) / 255.0;
        return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(color) + 0.7152 * part(color >> 8) + 0.0722 * part(color >> 16);
}

double Contrast(OleColor a, OleColor b) {
    const double first = Brightness(a) + 0.05;
    const double second = Brightness(b) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

// Returns the part of an area between two distances from the side where reading begins.
Rect Span(const Rect& area, int from, int to, bool rightToLeft) {
    return rightToLeft ? Rect{area.right - to, area.top, area.right - from, area.bottom}
                       : Rect{area.left + from, area.top, area.left + to, area.bottom};
}

int ColumnWidth(Dpi dpi) { return Scaled(pictureSize + 2 * pictureMargin, dpi.x); }

Rect Centered(const Rect& area, Size size) {
    const int left = area.left + (area.Width() - size.width) / 2;
    const int top = area.top + (area.Height() - size.height) / 2;
    return {left, top, left + size.width, top + size.height};
}

FontSpec FontOf(const MenuItemLook& look) {
    FontSpec font = look.font;
    constexpr int bold = 700;
    if (look.isDefault) font.weight = std::max(font.weight, bold);
    return font;
}

unsigned TextFormat(const MenuItemLook& look) {
    return text_format::singleLine | text_format::middle |
           (look.rightToLeft ? text_format::rightToLeft : text_format::left);
}

// Draws a tick: two columns down, four up, in strokes three pixels high.
void DrawCheck(Surface& surface, const Rect& column, OleColor color) {
    constexpr std::array tops{2, 3, 4, 3, 2, 1, 0};
    constexpr int stroke = 3;
    const Dpi dpi = surface.Resolution();
    const Rect glyph = Centered(column, {Scaled(glyphSize, dpi.x), Scaled(glyphSize, dpi.y)});
    for (int x = 0; x < glyphSize; ++x) {
        const int top = tops[static_cast<std::size_t>(x)];
        surface.FillRect({glyph.left + Scaled(x, dpi.x), glyph.top + Scaled(top, dpi.y),
                          glyph.left + Scaled(x + 1, dpi.x), glyph.top + Scaled(top + stroke, dpi.y)},
                         color);
    }
}

void DrawDot(Surface& surface, const Rect& column, OleColor color) {
    const Dpi dpi = surface.Resolution();
    const int size = Scaled(glyphSize, dpi.y);
    const Rect glyph = Centered(column, {Scaled(glyphSize, dpi.x), size});
    // Each row is as wide as the circle is there.
    for (int y = 0; y < size; ++y) {
        const double height = (y + 0.5) * 2 / size - 1;
        const int half = static_cast<int>(std::lround(std::sqrt(1 - height * height) * glyph.Width() / 2));
        const int middle = glyph.left + glyph.right;
        surface.FillRect({(middle + 1) / 2 - half, glyph.top + y, middle / 2 + half, glyph.top + y + 1}, color);
    }
}

}  // namespace

Rect MenuPictureArea(const Rect& item, Dpi dpi, bool rightToLeft) {
    return Centered(Span(item, 0, ColumnWidth(dpi), rightToLeft),
                    {Scaled(pictureSize, dpi.x), Scaled(pictureSize, dpi.y)});
}

Size MeasureMenuItem(Surface& surface, const MenuItemLook& look) {
    const Dpi dpi = surface.Resolution();
    const FontSpec font = FontOf(look);
    const MenuText text = SplitMenuText(look.text);
    int width = ColumnWidth(dpi) + Scaled(labelGap, dpi.x) +
                surface.MeasureText(text.label, font, 0, text_format::singleLine).width + Scaled(farMargin, dpi.x);
    if (!text.keys.empty()) {
        width += Scaled(keysGap, dpi.x) +
                 surface.MeasureText(text.keys, font, 0, text_format::singleLine | text_format::noPrefix).width;
    }
    const int line = surface.LineHeight(font) + 2 * Scaled(lineMargin, dpi.y);
    return {width, std::max(line, Scaled(pictureSize + 2 * pictureMargin, dpi.y))};
}

void DrawMenuItem(Surface& surface, const Rect& area, const MenuItemLook& look) {
    const Dpi dpi = surface.Resolution();
    const MenuColors& colors = look.colors;
    const bool filled =
        look.selected && !(look.disabled && Contrast(colors.disabledText, colors.selected) < leastContrast);
    surface.FillRect(area, filled ? colors.selected : colors.ground);
    if (look.selected) surface.FrameRect(area, colors.selectedFrame);
    const OleColor color = look.disabled ? colors.disabledText : filled ? colors.selectedText : colors.text;

    const int column = ColumnWidth(dpi);
    const Rect pictureColumn = Span(area, 0, column, look.rightToLeft);
    if (look.picture && look.disabledPicture) {
        const Rect picture = MenuPictureArea(area, dpi, look.rightToLeft);
        if (look.checked) {
            const Rect frame = picture.Inflated(Scaled(2, dpi.x), Scaled(2, dpi.y));
            if (!filled) surface.FillRect(frame, colors.checkedGround);
            surface.DrawEdge(frame, edge::sunkenOuter, edge::allSides);
        }
        surface.DrawPicture(look.disabled ? *look.disabledPicture : *look.picture, picture);
    } else if (look.checked) {
        (look.radio ? DrawDot : DrawCheck)(surface, pictureColumn, color);
    }

    const MenuText text = SplitMenuText(look.text);
    const Rect line =
        Span(area, column + Scaled(labelGap, dpi.x), area.Width() - Scaled(farMargin, dpi.x), look.rightToLeft);
    const FontSpec font = FontOf(look);
    const unsigned format = TextFormat(look);
    const unsigned near = look.rightToLeft ? text_format::right : text_format::left;
    const unsigned far = look.rightToLeft ? text_format::left : text_format::right;
    // Not every system can omit the underline.
    if (look.hideAccessKeys) {
        surface.DrawLabel(WithoutAccessMark(text.label), line, font, color, format | near | text_format::noPrefix);
    } else {
        surface.DrawLabel(text.label, line, font, color, format | near);
    }
    if (!text.keys.empty()) surface.DrawLabel(text.keys, line, font, color, format | far | text_format::noPrefix);
}

}  // namespace qvx::menus
