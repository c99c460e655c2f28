// Tab-separated text from other programs: a text that was read and written reads the same again, cells with any text
// survive writing and reading, and a paste that is undone leaves the grid as it was.
#include <cstdint>
#include <vector>

#include "controls/grid/clipboard_text.h"
#include "controls/grid/copied_cells.h"
#include "controls/grid/paste.h"
#include "fuzz/fuzz_input.h"
#include "tests/support/clipboard_table.h"

namespace qvx::grid {
namespace {

// Reads the text and checks what must hold for any text.
Table ReadChecked(TextView text) {
    const ClipboardCells cells(text);
    Table table = Read(text);
    std::size_t widest = 0;
    for (const auto& row : table) {
        widest = std::max(widest, row.size());
        Require(!row.empty(), "a row has a cell");
    }
    Require(!table.empty(), "a text has a row");
    Require(widest == cells.Cols(), "the width is the longest row's");
    return table;
}

// Creates cells of the characters that matter, and a few others.
Table MakeTable(FuzzInput& input) {
    constexpr TextView characters = u"\t\r\n\"\"a \u20AC";
    Table table(1, std::vector<Text>(1));
    while (input.Left() > 0) {
        const std::uint8_t byte = input.Byte();
        if (byte % 16 == 15) {
            table.back().emplace_back();
        } else if (byte % 16 == 14) {
            table.emplace_back(1);
        } else {
            table.back().back() += characters[byte % characters.size()];
        }
    }
    return table;
}

struct Nobody {
    void BeforeCellChange(int, int, const Text&, bool&) {}
    void AfterCellChange(int, int, const Text&, const Text&, bool&) {}
    bool Listens() const { return listens; }
    bool listens = false;
};

Text Whole(flexgrid::Grid& grid) {
    grid.Select(0, 0, grid.Rows() - 1, grid.Cols() - 1);
    return CopiedText(grid).value_or(Text());
}

void PasteAndUndo(std::uint8_t kind, const Text& text) {
    flexgrid::Grid grid;
    ControlState state;
    EditHistory history(grid);
    Nobody nobody;
    nobody.listens = (kind & 1) != 0;
    state.autoAddNew = (kind & 2) != 0;
    state.columnsDataType = u";A-0;B-1;C-2;";
    grid.SetFormatString(u"No|A|B|C|D");
    grid.SetRows(4);
    grid.SetTextMatrix(2, 4, u"stays");
    const Text before = Whole(grid);
    grid.MoveTo(1 + (kind >> 2) % 3, (kind >> 4) % 5);
    const ClipboardCells cells(text);
    const CellRectangle rectangle(grid, cells);
    const CellSources sources;
    CellWriter<Nobody>(grid, state, history, nobody, sources).Write(rectangle);
    const Text after = Whole(grid);
    if (!history.Undo(state)) {
        Require(before == after, "what leaves no step has changed nothing");
        return;
    }
    Require(!history.CanUndo(), "a paste is one step");
    Require(Whole(grid) == before, "a paste is undone");
    history.Redo(state);
    Require(Whole(grid) == after, "and done again");
}

}  // namespace
}  // namespace qvx::grid

void qvx::CheckInput(FuzzInput& input) {
    using namespace grid;
    const std::uint8_t kind = input.Byte();
    if ((kind & 0x80) != 0) {
        const Table table = MakeTable(input);
        Require(ReadChecked(Written(table)) == table, "what is written is read again");
        return;
    }
    const Text text = (kind & 0x40) != 0 ? input.RestWide() : input.RestLatin();
    const Table table = ReadChecked(text);
    Require(ReadChecked(Written(table)) == table, "what is read is written and read again");
    PasteAndUndo(kind, text);
}
