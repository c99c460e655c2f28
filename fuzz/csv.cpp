// CSV files from other programs: any bytes are read or refused, cells with any text survive writing and reading, and an
// import that is undone leaves the grid as it was.
#include <cstdint>
#include <string>

#include "common/run_time_error.h"
#include "controls/grid/csv_import.h"
#include "controls/grid/table_export.h"
#include "fuzz/fuzz_input.h"

namespace qvx::grid {
namespace {

struct Host {
    void BeforeCellChange(int, int, const Text&, bool&) {}
    void AfterCellChange(int, int, const Text&, const Text&, bool&) {}
    void ImportReport(long line, const Text&, const Text&, TextView) {
        Require(line >= last, "lines are reported in their order");
        last = line;
    }
    bool Listens() const { return listens; }
    bool listens = false;
    long last = 1;
};

class StringTarget final : public ExportTarget {
  public:
    void Write(std::string_view written) override { bytes += written; }
    void Rewrite(std::uint64_t, std::string_view) override { Require(false, "nothing is rewritten in CSV"); }
    std::string bytes;
};

Text AllCells(const flexgrid::Grid& grid) {
    Text text;
    for (int row = 0; row < grid.Rows(); ++row) {
        for (int col = 0; col < grid.Cols(); ++col) AppendCell(text += u'\t', grid.TextMatrix(row, col), u'\t');
    }
    return text;
}

int ImportInto(flexgrid::Grid& grid, ControlState& state, EditHistory& history, std::uint8_t kind, TextView text) {
    Host host;
    host.listens = (kind & 1) != 0;
    const CellSources sources;
    CsvRows rows(grid, text, (kind & 2) != 0 ? u';' : u',', (kind & 4) != 0);
    return ImportRows(grid, state, history, host, sources, rows);
}

}  // namespace
}  // namespace qvx::grid

void qvx::CheckInput(FuzzInput& input) {
    using namespace grid;
    const std::uint8_t kind = input.Byte();
    const AnsiCodePage page{{}, [](std::string_view bytes) { return Text(bytes.begin(), bytes.end()); }};
    Text text;
    try {
        const auto bytes = input.RestBytes();
        text = DecodeFile({reinterpret_cast<const char*>(bytes.data()), bytes.size()}, u"", page);
    } catch (const RunTimeError&) {
        return;
    }
    flexgrid::Grid grid;
    ControlState state;
    EditHistory history(grid);
    grid.SetFixedCols(0);
    grid.SetFormatString(u"A|B|C|D");
    grid.SetRows(1);
    const Text before = AllCells(grid);
    const int count = ImportInto(grid, state, history, kind, text);
    Require(grid.Rows() == 1 + count, "each row is added");

    StringTarget file;
    ExportBlocks blocks(file);
    const ExportOptions options{.separator = (kind & 2) != 0 ? u';' : u',', .encoding = TextEncoding::utf16};
    const ExportedCells cells = ChooseCells(grid, state, false);
    WriteTable(grid, cells, *MakeTableWriter(options, cells, blocks), [](std::int64_t) { return true; });
    blocks.Flush();
    const Text whole = AllCells(grid);
    if (history.Undo(state)) Require(AllCells(grid) == before, "an import is undone");
    Require(grid.Rows() == 1 && !history.CanUndo(), "an import is one step");
    ImportInto(grid, state, history, kind | 4, DecodeFile(file.bytes, u"", page));
    Require(AllCells(grid) == whole, "what is written is read again");
}
