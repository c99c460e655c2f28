// The colours of a flat border, and the bands that are painted with them.
#pragma once

#include <array>

#include "common/ole_color.h"

namespace qvx::borders {

struct BorderColors {
    OleColor inner = Rgb(0, 0, 0);
    OleColor outer = Rgb(250, 251, 208);
    friend bool operator==(const BorderColors&, const BorderColors&) = default;
};

// A frame at the edge of the whole window.
struct BorderBand {
    OleColor color;
    int width;  // device pixels at any resolution
    friend bool operator==(const BorderBand&, const BorderBand&) = default;
};

// Returns the bands in the order of painting: the narrow band is painted over the edge of the wide one.
std::array<BorderBand, 2> BorderBands(const BorderColors& colors);

}  // namespace qvx::borders
