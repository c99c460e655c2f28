// Conversion between pixels and hundredths of a millimetre, the unit of extents.
#pragma once

#include <windows.h>

#include "common/geometry.h"
#include "common/himetric.h"

namespace qvx {

// Both round half away from zero.
inline SIZEL PixelsToHimetric(Size pixels, Dpi dpi) {
    return {ScaleRounded(pixels.width, himetricPerInch, dpi.x), ScaleRounded(pixels.height, himetricPerInch, dpi.y)};
}
inline Size HimetricToPixels(SIZEL extent, Dpi dpi) {
    return {ScaleRounded(extent.cx, dpi.x, himetricPerInch), ScaleRounded(extent.cy, dpi.y, himetricPerInch)};
}

}  // namespace qvx
