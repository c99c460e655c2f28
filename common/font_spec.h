// A font as a value, so that rules can ask for text to be measured and drawn without holding a system handle.
#pragma once

#include "common/text.h"

namespace qvx {

struct FontSpec {
    Text face = u"MS Sans Serif";
    double points = 8.25;  // height in points, 1/72 inch
    int weight = 400;      // 400 regular, 700 bold
    bool italic = false;
    bool underline = false;
    bool strikeThrough = false;
    double widthPoints = 0;  // average character width in points; 0 leaves it to the face
    int charset = 0;
    friend bool operator==(const FontSpec&, const FontSpec&) = default;
};

}  // namespace qvx
