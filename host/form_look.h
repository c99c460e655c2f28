// What a form file says of the form itself: its texts, colours, size, frame and font.
#pragma once

#include "common/font_spec.h"
#include "common/ole_color.h"
#include "host/saved_properties.h"

namespace qvx::host {

struct FormLook {
    Text caption;
    Text tag;
    OleColor backColor{};
    OleColor foreColor{};
    // The client area in twips.
    int clientWidth = 0;
    int clientHeight = 0;
    int borderStyle = 2;  // 0 none, 1 fixed, 2 sizable, 3 fixed dialog
    bool minButton = true;
    bool maxButton = true;
    FontSpec font;
};

FormLook ReadLook(const Block& form);
SavedProperties SaveLook(const FormLook& look);
// The properties that ReadLook reads.
const std::vector<Text>& LookProperties();

}  // namespace qvx::host
