// The colours that the property list offers: the system's, by their names, and a palette.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>

#include "common/ole_color.h"
#include "common/text.h"

namespace qvx::host::designer {

struct SystemColor {
    TextView name;
    OleColor color;
};

// In the order of the system's numbers.
std::span<const SystemColor> SystemColors();

// By its name, in any case and with or without blanks: "Button Face", "buttonface".
std::optional<OleColor> SystemColorByName(TextView name);

constexpr int paletteColumns = 8;
constexpr int paletteRows = 6;
constexpr std::size_t paletteCells = static_cast<std::size_t>(paletteColumns) * paletteRows;
// Row by row: greys and full colours first, from dark to light in each column.
std::span<const OleColor, paletteCells> Palette();

}  // namespace qvx::host::designer
