// Small pictures that are drawn rather than loaded: a raised button with filled rectangles on it.
#pragma once

#include <span>

#include "common/geometry.h"
#include "drawing/surface.h"

namespace qvx {

struct PictureBlock {
    Rect place;  // in steps, on a field of `steps` steps each way
    OleColor color;
};

// Draws the blocks on a field of `steps` by `steps` that fills `area`; later blocks cover earlier ones.
void DrawBlockPicture(Surface& surface, const Rect& area, int steps, std::span<const PictureBlock> blocks);

}  // namespace qvx
