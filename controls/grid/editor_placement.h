// Where the editor lies over a cell. All lengths in twips of the control's client area.
#pragma once

#include "common/geometry.h"

namespace qvx::grid {

// The editor's border must fall outside its frame, which clips it.
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
    int comboWidth;  // its height is its own affair
};

// `cell` is the grid's CellLeft, CellTop, CellWidth and CellHeight. Where the grid's Appearance and BorderStyle share a
// bit, its border is drawn inside what those count from and the frame moves by 10 twips. With `hideButton` the combo
// reaches past the frame by the width of a vertical scroll bar (in pixels, at `twipsPerPixelX`), which puts its drop
// button out of sight. That is at its right end, or at its left in a grid that runs from right to left (`mirrored`).
EditorPlacement PlaceEditor(const CellBox& cell, int appearance, int borderStyle, bool hideButton, int scrollBarPixels,
                            int twipsPerPixelX, bool mirrored);

}  // namespace qvx::grid
