#include "elements/flexgrid/format_table.h"

namespace qvx::flexgrid {

const FontSpec& FormatTable::FontOf(RowId row, int col, const FontSpec& gridFont) const {
    const auto found = formats_.find({row, col});
    if (found == formats_.end() || !found->second.format.ChangesFont()) {
        return gridFont;
    }
    found->second.font = found->second.format.FontFrom(gridFont);
    return found->second.font;
}

void FormatTable::TruncateColumns(int cols) {
    std::erase_if(formats_, [&](const auto& entry) { return entry.first.second >= cols; });
}

void FormatTable::MoveColumn(int from, int to) {
    std::map<std::pair<RowId, int>, Entry> moved;
    for (const auto& [key, entry] : formats_) {
        int col = key.second;
        if (col == from) {
            col = to;
        } else if (from < to && col > from && col <= to) {
            --col;
        } else if (to < from && col >= to && col < from) {
            ++col;
        }
        moved.emplace(std::pair(key.first, col), entry);
    }
    formats_.swap(moved);
}

}  // namespace qvx::flexgrid
