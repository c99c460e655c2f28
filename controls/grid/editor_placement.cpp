#include "controls/grid/editor_placement.h"

namespace qvx::grid {

EditorPlacement PlaceEditor(const CellBox& cell, int appearance, int borderStyle, bool hideButton, int scrollBarPixels,
                            int twipsPerPixelX, bool mirrored) {
    const int allowance = (appearance & borderStyle) != 0 ? -10 : 0;
    EditorPlacement placement{{cell.left + allowance, cell.top + allowance, cell.width, cell.height},
                              -editorOverhang,
                              -editorOverhang,
                              cell.width + 2 * editorOverhang};
    if (hideButton) {
        const int button = twipsPerPixelX * scrollBarPixels;
        placement.comboWidth += button;
        if (mirrored) placement.comboLeft -= button;
    }
    return placement;
}

}  // namespace qvx::grid
