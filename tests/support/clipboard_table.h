// Tab-separated text as a table of cells and back, for tests that compare the two.
#pragma once

#include <vector>

#include "common/text.h"
#include "controls/grid/clipboard_text.h"

namespace qvx::grid {

using Table = std::vector<std::vector<Text>>;

inline Table Read(TextView text) {
    const ClipboardCells cells(text);
    Table table;
    for (std::size_t row = 0; row < cells.Rows(); ++row) {
        table.emplace_back();
        for (const TextView cell : cells.Row(row)) table.back().emplace_back(cell);
    }
    return table;
}

inline Text Written(const Table& table) {
    ClipboardWriter writer;
    for (const auto& row : table) {
        for (const Text& cell : row) writer.AddCell(cell);
        writer.EndRow();
    }
    return writer.Take();
}

}  // namespace qvx::grid
