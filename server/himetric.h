// Extents travel between controls and containers in hundredths of a millimetre.
#pragma once

#include <windows.h>

#include "common/geometry.h"

namespace qvx {

constexpr int himetricPerInch = 2540;

inline SIZEL PixelsToHimetric(Size pixels, Dpi dpi) {
    return {ScaleRounded(pixels.width, himetricPerInch, dpi.x), ScaleRounded(pixels.height, himetricPerInch, dpi.y)};
}
inline Size HimetricToPixels(SIZEL extent, Dpi dpi) {
    return {ScaleRounded(extent.cx, dpi.x, himetricPerInch), ScaleRounded(extent.cy, dpi.y, himetricPerInch)};
}

}  // namespace qvx
