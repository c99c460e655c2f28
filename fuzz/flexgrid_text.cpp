// The texts that a grid parses: format strings, items, blocks of items and clips. The results are compared with a plain
// splitting of the same text, and a clip that is read and written back changes nothing.
#include <algorithm>
#include <cstdint>
#include <vector>

#include "common/run_time_error.h"
#include "fuzz/fuzz_input.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::flexgrid {
namespace {

std::vector<Text> Split(const Text& text, char16_t separator) {
    std::vector<Text> parts(1);
    for (const char16_t unit : text) {
        if (unit == separator) {
            parts.emplace_back();
        } else {
            parts.back() += unit;
        }
    }
    return parts;
}

void CheckRow(const Grid& grid, int row, const Text& item) {
    std::vector<Text> cells = Split(item, u'\t');
    cells.resize(static_cast<std::size_t>(grid.Cols()));
    for (int col = 0; col < grid.Cols(); ++col) {
        Require(grid.Cell(row, col) == TextView(cells[static_cast<std::size_t>(col)]), "an item fills its cells");
    }
}

void AddItem(Grid& grid, const Text& item) {
    grid.AddItem(item);
    CheckRow(grid, grid.Rows() - 1, item);
}

void AddItems(Grid& grid, const Text& block) {
    Text plain;
    for (std::size_t i = 0; i < block.size(); ++i) {
        const bool pair = block[i] == u'\n' && i > 0 && block[i - 1] == u'\r';
        if (!pair) {
            plain += block[i] == u'\n' ? u'\r' : block[i];
        }
    }
    std::vector<Text> items = Split(plain, u'\r');
    if (items.back().empty()) {
        items.pop_back();
    }
    const int before = grid.Rows();
    Require(grid.AddItems(block) == static_cast<int>(items.size()), "a block has as many rows as it shows");
    for (std::size_t i = 0; i < items.size(); ++i) {
        CheckRow(grid, before + static_cast<int>(i), items[i]);
    }
}

void SetFormatString(Grid& grid, const Text& format) {
    const int rows = grid.Rows();
    const int cols = grid.Cols();
    try {
        grid.SetFormatString(format);
    } catch (const RunTimeError&) {
        Require(grid.Rows() == rows && grid.Cols() == cols, "a refused format string changes nothing");
        return;
    }
    const Text columns = format.substr(0, format.find(u';'));
    const std::size_t segments = columns.empty() ? 0 : Split(columns, u'|').size();
    Require(grid.Cols() >= std::max(cols, static_cast<int>(segments)) && grid.Rows() >= rows,
            "a format string adds and never removes");
    for (int col = 0; col < grid.Cols(); ++col) {
        Require(grid.ColWidth(col) >= 0, "widths are sizes");
    }
}

void Paste(Grid& grid, FuzzInput& input, const Text& clip) {
    const auto rowBelow = [&] { return static_cast<int>(input.Byte()) % grid.Rows(); };
    const auto colBelow = [&] { return static_cast<int>(input.Byte()) % grid.Cols(); };
    const int row = rowBelow();
    const int col = colBelow();
    grid.Select(row, col, rowBelow(), colBelow());
    grid.SetClip(clip);
    const Text read = grid.Clip();
    // A cell that contains a tab or a line break cannot be distinguished from two cells.
    const CellRange range = grid.Selection();
    const auto rowEnds = range.bottom - range.top;
    const auto tabs = (rowEnds + 1) * (range.right - range.left);
    if (read.find(u'\n') == Text::npos && std::count(read.begin(), read.end(), u'\r') == rowEnds &&
        std::count(read.begin(), read.end(), u'\t') == tabs) {
        grid.SetClip(read);
        Require(grid.Clip() == read, "a clip written back changes nothing");
    }
}

}  // namespace
}  // namespace qvx::flexgrid

void qvx::CheckInput(FuzzInput& input) {
    using namespace flexgrid;
    Grid grid;
    while (input.Left() > 0) {
        const std::uint8_t kind = input.Byte();
        Text text = input.Latin(input.Byte());
        if ((kind & 0x80) != 0 && !text.empty()) {
            text.back() = u'\u20AC';
        }
        switch (kind % 4) {
            case 0:
                AddItem(grid, text);
                break;
            case 1:
                AddItems(grid, text);
                break;
            case 2:
                SetFormatString(grid, text);
                break;
            default:
                Paste(grid, input, text);
                break;
        }
    }
}
