// Rows from a CSV file: which column each cell belongs to, and what is reported of those that do not fit.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "common/text.h"
#include "controls/grid/clipboard_text.h"
#include "controls/grid/paste.h"
#include "controls/grid/row_operations.h"

namespace qvx::grid {

namespace import_reasons {
constexpr TextView noColumn = u"The grid has no such column";
constexpr TextView lockedColumn = u"The column cannot be edited";
constexpr TextView surplusCell = u"There is no column for this cell";
constexpr TextView changedCell = u"The column does not take this text as it is";
}  // namespace import_reasons

// The columns of the text are found in the grid by their captions, regardless of case, the second of the same name as
// the second one there; without a header they are those that the grid shows, in their order. Empty lines of a text with
// several columns are no rows.
class CsvRows {
  public:
    static constexpr int noColumn = -1;

    // The text must outlive this object.
    CsvRows(const flexgrid::Grid& grid, TextView text, char16_t separator, bool hasHeader);

    int Count() const { return static_cast<int>(rows_.size()); }
    // For each of the text's columns, the grid's column.
    std::span<const int> Columns() const { return columns_; }
    // The text's own captions; none without a header.
    std::span<const Text> Captions() const { return captions_; }
    // Returns the texts of a row by the grid's columns. Valid until the next call.
    std::span<const TextView> TextsOf(int row);
    // Returns the cells of a row that are not empty and for which the text has no column.
    std::vector<Text> SurplusOf(int row) const;
    // Returns the number of the line on which a row begins, from 1 on. Rows must be asked for in their order.
    long LineOf(int row);

  private:
    ClipboardCells cells_;
    std::vector<std::size_t> rows_;  // the numbers of the rows in the text
    std::vector<int> columns_;
    std::vector<Text> captions_;
    std::vector<TextView> texts_;
    std::size_t counted_ = 0;  // the part of the text whose lines are in `line_`
    long line_ = 1;
};

// The events of an import, besides those of every change.
template <class H>
concept ImportEvents = ChangeEvents<H> && requires(H events, long line, const Text& text, TextView reason) {
    events.ImportReport(line, text, text, reason);
};

// Adds the rows at the end, the first one in place of an empty last row, as one step of the history; every cell is
// treated as a pasted one. Returns the number of rows. Raises the grid's errors as CellWriter does.
template <ImportEvents Events>
int ImportRows(flexgrid::Grid& grid, ControlState& state, EditHistory& history, Events& events,
               const CellSources& sources, CsvRows& rows) {
    const std::span<const Text> captions = rows.Captions();
    const auto captionOf = [&](int col) { return grid.Rows() > 0 ? grid.TextArray(col) : Text(); };
    if (events.Listens()) {
        for (std::size_t i = 0; i < rows.Columns().size(); ++i) {
            const int col = rows.Columns()[i];
            const Text caption = i < captions.size()             ? captions[i]
                                 : col < 0 || col >= grid.Cols() ? Text()
                                                                 : captionOf(col);
            if (col == CsvRows::noColumn) {
                events.ImportReport(1, caption, Text(), import_reasons::noColumn);
            } else if (grid.Rows() > 0 && col < grid.Cols() && RulesOf(grid, state, col).refuses &&
                       col >= FirstRecordColumn(state)) {
                events.ImportReport(1, caption, Text(), import_reasons::lockedColumn);
            }
        }
    }
    if (rows.Count() == 0 || grid.Cols() == 0) return 0;
    const int last = grid.Rows() - 1;
    const bool fillsLast = last >= grid.FixedRows() && !grid.RowFiltered(last) && IsEmptyRecord(grid, state, last);
    const int top = grid.Rows() - (fillsLast ? 1 : 0);
    // The limit of the grid is far below that of numbers.
    const int bottom = top + std::min(rows.Count(), flexgrid::Grid::maxRows) - 1;
    int current = top;
    const auto textsOf = [&](int row) {
        current = row;
        if (events.Listens()) {
            for (const Text& surplus : rows.SurplusOf(row - top))
                events.ImportReport(rows.LineOf(row - top), Text(), surplus, import_reasons::surplusCell);
        }
        return rows.TextsOf(row - top);
    };
    const auto changed = [&](int, int col, TextView given) {
        // A handler of the event may have removed the column.
        const Text caption = col < grid.Cols() ? captionOf(col) : Text();
        events.ImportReport(rows.LineOf(current - top), caption, Text(given), import_reasons::changedCell);
    };
    CellWriter<Events>(grid, state, history, events, sources, changed)
        .Write(CellRectangle::ForNewRows({top, 0, bottom, grid.Cols() - 1}, textsOf));
    return rows.Count();
}

}  // namespace qvx::grid
