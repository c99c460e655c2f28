// The appearance of one cell where it differs from its grid. Values that are not set are the grid's.
#pragma once

#include <memory>
#include <optional>

#include "common/font_spec.h"
#include "common/ole_color.h"
#include "common/text.h"
#include "drawing/surface.h"
#include "widgets/flexgrid/enums.h"

namespace qvx::flexgrid {

struct CellFormat {
    std::optional<GridAlignment> alignment;
    OleColor backColor = 0;  // 0 means the grid's own colour
    OleColor foreColor = 0;  // 0 means the grid's own colour
    std::optional<Text> fontName;
    std::optional<double> fontSize;   // points
    std::optional<double> fontWidth;  // points, average character; 0 leaves it to the face
    std::optional<bool> fontBold;
    std::optional<bool> fontItalic;
    std::optional<bool> fontUnderline;
    std::optional<bool> fontStrikeThrough;
    std::shared_ptr<const Picture> picture;
    GridAlignment pictureAlignment = GridAlignment::leftTop;
    std::optional<GridTextStyle> textStyle;

    bool ChangesFont() const {
        return fontName || fontSize || fontWidth || fontBold || fontItalic || fontUnderline || fontStrikeThrough;
    }
    // Returns the grid's font with this format's changes.
    FontSpec FontFrom(const FontSpec& gridFont) const {
        FontSpec font = gridFont;
        font.face = fontName.value_or(font.face);
        font.points = fontSize.value_or(font.points);
        font.widthPoints = fontWidth.value_or(font.widthPoints);
        font.weight = fontBold ? (*fontBold ? 700 : 400) : font.weight;
        font.italic = fontItalic.value_or(font.italic);
        font.underline = fontUnderline.value_or(font.underline);
        font.strikeThrough = fontStrikeThrough.value_or(font.strikeThrough);
        return font;
    }
    friend bool operator==(const CellFormat&, const CellFormat&) = default;
};

}  // namespace qvx::flexgrid
