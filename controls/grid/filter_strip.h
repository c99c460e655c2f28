// The filter row above a grid: where its fields are, what its keys do, and what it says.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "common/geometry.h"
#include "common/text.h"
#include "controls/grid/control_state.h"
#include "widgets/flexgrid/axis.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

// The field of a column, in pixels of the strip.
struct FilterField {
    int col = 0;
    Rect area;
    friend bool operator==(const FilterField&, const FilterField&) = default;
};

struct StripMeasures {
    Size strip;
    Dpi dpi;
    int countWidth = 0;  // of the text about the rows that are shown; 0 for none
    bool rightToLeft = false;
};

struct StripLayout {
    std::vector<FilterField> fields;  // of the visible columns that scroll
    Rect count;                       // empty where there is no room
};

int StripHeight(int lineHeight, Dpi dpi);
// `columns` are those that are visible, the fixed ones among them. What is beside the columns, or the corner above the
// fixed ones, has the text.
StripLayout LayOutStrip(std::span<const flexgrid::Span> columns, int fixedCols, const StripMeasures& measures);

enum class StripKey {
    None,
    Apply,
    Clear,  // or, where nothing is typed, back to the grid
    ToGrid,
    NextField,
    PreviousField,
    SelectAll,
};
// Returns the meaning of a key in a field.
StripKey DecideStripKey(int keyCode, int shift);
// Whether a key goes from the grid to the field of the current column, and back.
bool IsFilterKey(int keyCode, int shift, const ControlState& state);

// Returns the next column with a field in that direction, and after the last one the first; -1 for none.
int NextFilterColumn(const flexgrid::Grid& grid, int col, int step);

// Returns the number of rows that the filter shows: "12 of 100,000".
Text ShownRowsText(std::int64_t shown, std::int64_t total);

}  // namespace qvx::grid
