// How the lines of the property list look: names, values, headings and the button of the current value.
#pragma once

#include "elements/surface/surface.h"
#include "host/design/property_table.h"
#include "host/design/rows_view.h"

namespace qvx::host {

// What is to be seen. Pixels of the client area.
struct RowsLook {
    const PropertyTable* table = nullptr;  // null for an empty list
    RowsView view;
    int current = -1;      // a line; -1 for none
    bool editing = false;  // a field lies over the current value
    bool buttonDown = false;
    int buttonWidth = 0;  // as wide as a scroll bar
    Dpi dpi;

    const PropertyRow* CurrentRow() const;
    // At the end of the current value; empty when that has none.
    Rect ButtonArea() const;
    // The field over the current value, for a text of that height.
    Rect EditArea(int lineHeight) const;
    int Scaled(int pixels) const { return ScaleRounded(pixels, dpi.x, 96); }
};

void PaintRows(Surface& surface, const RowsLook& look);

}  // namespace qvx::host
