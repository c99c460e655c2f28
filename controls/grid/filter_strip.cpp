#include "controls/grid/filter_strip.h"

#include <algorithm>

#include "common/keys.h"
#include "controls/grid/find_bar_layout.h"
#include "dialogs/messages.h"

namespace qvx::grid {

int StripHeight(int lineHeight, Dpi dpi) { return lineHeight + Scaled(9, dpi.y); }

[[gnu::cold]] StripLayout LayOutStrip(std::span<const flexgrid::Span> columns, int fixedCols,
                                      const StripMeasures& measures) {
    StripLayout layout;
    const int gap = Scaled(2, measures.dpi.x);
    const Size strip = measures.strip;
    // What the columns leave free, and what the fixed ones take.
    Rect rest{0, 0, strip.width, strip.height};
    Rect corner{};
    for (const flexgrid::Span& column : columns) {
        const Rect area{column.start, gap, column.end, strip.height - gap};
        if (measures.rightToLeft) {
            rest.right = std::min(rest.right, column.start);
        } else {
            rest.left = std::max(rest.left, column.end);
        }
        if (column.index >= fixedCols) {
            // One pixel of the right side is the grid's line.
            if (column.Size() > 2 * gap)
                layout.fields.push_back({column.index, {area.left, gap, area.right - 1, area.bottom}});
        } else if (column.Size() > 0) {
            corner = corner.Empty()
                         ? area
                         : Rect{std::min(corner.left, area.left), gap, std::max(corner.right, area.right), area.bottom};
        }
    }
    if (measures.countWidth == 0) return layout;
    for (const Rect& place : {rest, corner}) {
        if (!layout.count.Empty() || place.Width() < measures.countWidth + 4 * gap) continue;
        layout.count = {place.left + 2 * gap, gap, place.right - 2 * gap, strip.height - gap};
    }
    return layout;
}

StripKey DecideStripKey(int keyCode, int shift) {
    if (keyCode == keys::tab && shift == keys::shiftMask) return StripKey::PreviousField;
    if (keyCode == 'A' && shift == keys::controlMask) return StripKey::SelectAll;
    if (keyCode == 'L' && shift == (keys::controlMask | keys::shiftMask)) return StripKey::ToGrid;
    if (shift != 0) return StripKey::None;
    switch (keyCode) {
        case keys::enter:
            return StripKey::Apply;
        case keys::escape:
            return StripKey::Clear;
        case keys::down:
            return StripKey::ToGrid;
        case keys::tab:
            return StripKey::NextField;
        default:
            return StripKey::None;
    }
}

bool IsFilterKey(int keyCode, int shift, const ControlState& state) {
    return state.filterRow && keyCode == 'L' && shift == (keys::controlMask | keys::shiftMask);
}

int NextFilterColumn(const flexgrid::Grid& grid, int col, int step) {
    const int first = grid.FixedCols();
    const int count = grid.Cols() - first;
    for (int tried = 0; tried < count; ++tried) {
        col += step;
        if (col < first) col = grid.Cols() - 1;
        if (col >= grid.Cols()) col = first;
        if (grid.ColWidth(col) != 0) return col;
    }
    return -1;
}

Text ShownRowsText(std::int64_t shown, std::int64_t total) {
    Text text;
    AppendNumber(text, shown);
    text.append(dialogs::messages::find_bar::of);
    AppendNumber(text, total);
    return text;
}

}  // namespace qvx::grid
