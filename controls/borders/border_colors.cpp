#include "controls/borders/border_colors.h"

namespace qvx::borders {

namespace {
constexpr int innerWidth = 3;
constexpr int outerWidth = 1;
}  // namespace

std::array<BorderBand, 2> BorderBands(const BorderColors& colors) {
    return {{{colors.inner, innerWidth}, {colors.outer, outerWidth}}};
}

}  // namespace qvx::borders
