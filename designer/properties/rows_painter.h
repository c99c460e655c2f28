// How the lines of the property list look: names, values, headings and the button of the current value.
#pragma once

#include "designer/properties/listed_properties.h"
#include "designer/properties/rows_view.h"
#include "drawing/surface.h"

namespace qvx::host::designer {

// What is shown. Pixels of the client area.
struct RowsLook {
    const ListedProperties* table = nullptr;  // null for an empty list
    RowsView view;
    int current = -1;      // a line; -1 for none
    bool editing = false;  // a field covers the current value
    bool buttonDown = false;
    int buttonWidth = 0;  // as wide as a scroll bar
    Dpi dpi;

    const PropertyRow* CurrentRow() const;
    // At the end of the current value; empty when that has none.
    Rect ButtonArea() const;
    // The field over the current value, for a text of that height.
    Rect EditArea(int lineHeight) const;
    int Scaled(int pixels) const { return qvx::Scaled(pixels, dpi.x); }
};

void PaintRows(Surface& surface, const RowsLook& look);

}  // namespace qvx::host::designer
