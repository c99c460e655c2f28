// The place of the editor over a cell. All lengths are in twips of the control's client area.
#pragma once

#include "common/geometry.h"

namespace qvx::grid {

// The editor's border must be outside its frame, which clips it.
constexpr int editorOverhang = 30;

struct CellBox {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    friend bool operator==(const CellBox&, const CellBox&) = default;
};

struct EditorPlacement {
    CellBox frame;   // in the control
    int comboLeft;   // in the frame
    int comboTop;    // in the frame
    int comboWidth;  // the combo sets its own height
};

// Places the editor. `cell` is the grid's CellLeft, CellTop, CellWidth and CellHeight. If the grid's Appearance and
// BorderStyle share a bit, its border is inside the area that these are measured from, and the frame moves by 10 twips
// to the left and upwards. With `hideButton` the combo extends beyond the frame by the width of a vertical scroll bar
// (in pixels, at `twipsPerPixelX`), which hides its drop button: at its right end, or at its left in a grid that runs
// from right to left (`mirrored`).
EditorPlacement PlaceEditor(const CellBox& cell, int appearance, int borderStyle, bool hideButton, int scrollBarPixels,
                            int twipsPerPixelX, bool mirrored);

}  // namespace qvx::grid
