// The nine pictures of the message box, drawn from shapes so that they are sharp at any size.
#pragma once

#include <cstdint>
#include <vector>

#include "common/ole_color.h"

namespace qvx::dialogs {

// A square image with rows from the top; a pixel is 0xAARRGGBB with the colours multiplied by the alpha value.
struct IconImage {
    int size = 0;
    std::vector<std::uint32_t> pixels;
};

// `number` is 1 to 9, `size` is in pixels from 1 to 256.
IconImage DrawIcon(int number, int size);

// Returns the picture with opaque pixels on a plain background, which must not be a system colour.
IconImage OnBackground(IconImage image, OleColor background);

}  // namespace qvx::dialogs
