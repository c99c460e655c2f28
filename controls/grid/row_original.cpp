#include "controls/grid/row_original.h"

#include <algorithm>
#include <cstring>
#include <span>

namespace qvx::grid {
namespace {

std::vector<std::uint32_t> Words(const std::uint8_t* bytes, std::size_t size) {
    std::vector<std::uint32_t> words((size + 3) / 4);
    if (size > 0) std::memcpy(words.data(), bytes, size);
    return words;
}

}  // namespace

RowOriginal::RowOriginal(const flexgrid::RowView& cells) : record(Words(cells.Data(), cells.Size())) {}

void RowOriginal::Cut(int cols) noexcept {
    if (Cells().Count() <= cols) return;
    if (flexgrid::TruncateRecord(reinterpret_cast<std::uint8_t*>(record.data()), cols) == 0) record.clear();
}

std::vector<std::uint32_t> RowOriginal::WithMovedColumn(int from, int to) const {
    const flexgrid::RowView row = Cells();
    std::vector<flexgrid::CellView> cells(static_cast<std::size_t>(std::max({row.Count(), from + 1, to + 1})));
    for (int col = 0; col < row.Count(); ++col) cells[static_cast<std::size_t>(col)] = row[col];
    const auto begin = cells.begin();
    if (from < to) {
        std::rotate(begin + from, begin + from + 1, begin + to + 1);
    } else {
        std::rotate(begin + to, begin + from, begin + from + 1);
    }
    flexgrid::RecordBuilder builder;
    const std::span<const std::uint8_t> bytes = builder.FromCells(cells);
    return Words(bytes.data(), bytes.size());
}

}  // namespace qvx::grid
