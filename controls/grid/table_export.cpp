#include "controls/grid/table_export.h"

#include <algorithm>

#include "common/run_time_error.h"
#include "common/surrogates.h"
#include "common/text_compare.h"
#include "controls/grid/caption_list.h"
#include "controls/grid/cell_clean.h"
#include "controls/grid/clipboard_text.h"
#include "controls/grid/column_lists.h"
#include "controls/grid/html_table.h"
#include "controls/grid/xlsx_sheet.h"

namespace qvx::grid {
namespace {

ExportAlignment HorizontalOf(flexgrid::GridAlignment alignment) {
    if (alignment == flexgrid::GridAlignment::general) return ExportAlignment::general;
    constexpr ExportAlignment columns[] = {ExportAlignment::left, ExportAlignment::center, ExportAlignment::right};
    return columns[static_cast<int>(alignment) / 3];
}

class CsvWriter final : public TableWriter {
  public:
    CsvWriter(const ExportOptions& options, ExportBlocks& blocks) : options_(options), blocks_(blocks) {
        blocks_.Add(ByteOrderMark(options.encoding));
    }
    void AddRow(bool, std::span<const TextView> texts) override {
        line_.clear();
        for (std::size_t i = 0; i < texts.size(); ++i) {
            if (i > 0) line_ += options_.separator;
            AppendCell(line_, texts[i], options_.separator);
        }
        line_ += u"\r\n";
        blocks_.Add(Encode(line_, options_.encoding, options_.ansi));
    }
    void End() override {}

  private:
    const ExportOptions& options_;
    ExportBlocks& blocks_;
    Text line_;
};

}  // namespace

ExportColumn ExportColumnOf(const flexgrid::Grid& grid, const ControlState& state, int col) {
    return {col,
            CleaningCode(state.columnsDataType, CaptionOf(grid, col)),
            HorizontalOf(grid.ColAlignment(col)),
            HorizontalOf(grid.FixedAlignment(col)),
            grid.ColWidth(col),
            Text(TextForCaption(state.columnFormats, CaptionOf(grid, col)))};
}

ExportedCells ChooseCells(const flexgrid::Grid& grid, const ControlState& state, bool selectedOnly) {
    ExportedCells chosen;
    chosen.structure = grid.StructureVersion();
    flexgrid::CellRange range{grid.FixedRows(), 0, grid.Rows() - 1, grid.Cols() - 1};
    if (selectedOnly) {
        range = grid.Selection();
        range.top = std::max(range.top, grid.FixedRows());
    }
    chosen.first = range.top;
    chosen.last = range.bottom;
    for (int row = 0; row < grid.FixedRows(); ++row) chosen.headers += grid.RowPixels(row) > 0;
    for (int row = range.top; row <= range.bottom; ++row) chosen.total += grid.RowPixels(row) > 0;
    for (int col = range.left; col <= range.right; ++col) {
        if (grid.ColWidth(col) > 0) chosen.columns.push_back(ExportColumnOf(grid, state, col));
    }
    return chosen;
}

ExportFormat FormatNamed(TextView name, TextView fileName) {
    if (name.empty()) {
        const std::size_t point = fileName.find_last_of(u"./\\:");
        if (point != TextView::npos && fileName[point] == u'.') name = fileName.substr(point + 1);
    }
    if (EqualNoCase(name, u"csv")) return ExportFormat::csv;
    if (EqualNoCase(name, u"html") || EqualNoCase(name, u"htm")) return ExportFormat::html;
    if (EqualNoCase(name, u"xlsx")) return ExportFormat::xlsx;
    throw RunTimeError(errors::invalidProcedureCall, u"The format must be csv, html or xlsx");
}

char16_t SeparatorNamed(TextView separator) {
    constexpr TextView impossible = u"\"\r\n\uFEFF";
    if (separator.size() != 1 || impossible.find(separator.front()) != TextView::npos ||
        IsHighSurrogate(separator.front()) || IsLowSurrogate(separator.front()))
        throw RunTimeError(errors::invalidProcedureCall,
                           u"The separator must be one character, and neither a quote nor a line end");
    return separator.front();
}

std::unique_ptr<TableWriter> MakeTableWriter(const ExportOptions& options, const ExportedCells& cells,
                                             ExportBlocks& blocks) {
    switch (options.format) {
        case ExportFormat::html:
            return MakeHtmlWriter(cells, blocks);
        case ExportFormat::xlsx:
            return MakeXlsxWriter(options, cells, blocks);
        case ExportFormat::csv:
            break;
    }
    return std::make_unique<CsvWriter>(options, blocks);
}

bool WriteTable(const flexgrid::Grid& grid, const ExportedCells& cells, TableWriter& writer,
                const std::function<bool(std::int64_t done)>& goOn) {
    constexpr int rowsAtOnce = 256;
    std::vector<Text> kept(cells.columns.size());
    std::vector<TextView> texts(cells.columns.size());
    std::int64_t done = 0;
    const auto writeRows = [&](bool header, int first, int last) {
        grid.ForEachRow(first, last, [&](int row, const flexgrid::RowView& view) {
            if (grid.RowPixels(row) == 0) return;
            for (std::size_t i = 0; i < texts.size(); ++i) texts[i] = view[cells.columns[i].col].AsWide(kept[i]);
            writer.AddRow(header, texts);
            done += header ? 0 : 1;
        });
    };
    writeRows(true, 0, grid.FixedRows() - 1);
    for (int row = cells.first; row <= cells.last; row += rowsAtOnce) {
        writeRows(false, row, std::min(cells.last - row, rowsAtOnce - 1) + row);
        if (!goOn(done)) return false;
        if (grid.StructureVersion() != cells.structure)
            throw RunTimeError(errors::invalidProcedureCall, u"The grid's rows or columns have changed meanwhile");
    }
    writer.End();
    return true;
}

}  // namespace qvx::grid
