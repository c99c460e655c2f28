#include "drawing/block_picture.h"

namespace qvx {

void DrawBlockPicture(Surface& surface, const Rect& area, int steps, std::span<const PictureBlock> blocks) {
    surface.FillRect(area, colors::buttonFace);
    surface.DrawEdge(area, edge::raised, edge::allSides);
    const auto x = [&](int step) { return area.left + ScaleRounded(step, area.Width(), steps); };
    const auto y = [&](int step) { return area.top + ScaleRounded(step, area.Height(), steps); };
    for (const PictureBlock& block : blocks) {
        const Rect& place = block.place;
        surface.FillRect({x(place.left), y(place.top), x(place.right), y(place.bottom)}, block.color);
    }
}

}  // namespace qvx
