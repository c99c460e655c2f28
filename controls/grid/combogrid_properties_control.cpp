// The persisted properties of the ComboGrid control, in their order.
#include <windows.h>

#include <olectl.h>

#include <limits>

#include "common/run_time_error.h"
#include "controls/grid/combogrid_control.h"

namespace qvx::grid {
namespace {

using flexgrid::Grid;

// Checks an Integer of the interface; raises error 6 for a value that does not fit into 16 bits.
int CheckedInteger(std::int32_t value) {
    if (value < std::numeric_limits<short>::min() || value > std::numeric_limits<short>::max())
        throw RunTimeError(errors::overflow, u"Overflow");
    return value;
}

bool HasCells(const Grid& grid) { return grid.Rows() > 0 && grid.Cols() > 0; }

// The counts of a stored form are read before its fixed counts, and the current fixed counts of the grid must not
// restrict them.
void LoadRows(Grid& grid, int rows) {
    grid.SetFixedRows(0);
    grid.SetRows(rows);
}
void LoadCols(Grid& grid, int cols) {
    grid.SetFixedCols(0);
    grid.SetCols(cols);
}

// A grid that has only fixed rows once had more rows, and has to reach this state in the same way.
void LoadFixedRows(Grid& grid, int count) {
    const int rows = grid.Rows();
    if (count == rows && count > 0) grid.SetRows(rows + 1);
    grid.SetFixedRows(count);
    grid.SetRows(rows);
}
// A single column cannot be fixed: the count waits for more columns, as it does without any column.
void LoadFixedCols(Grid& grid, int count) {
    const int cols = grid.Cols();
    if (count == 1 && cols == 1) grid.SetCols(0);
    grid.SetFixedCols(count);
    grid.SetCols(cols);
}

}  // namespace

// A default is given here if the control's differs from the inner grid's own.
const PropertyTable& ComboGridControl::Properties() {
    using C = ComboGridControl;
    static const PropertyTable table =
        PropertyRows<C>()
            .Long(
                u"Rows", 3, [](C& c) { return c.Model().Rows(); }, [](C& c, std::int32_t v) { LoadRows(c.Model(), v); })
            .Long(
                u"Cols", 0, [](C& c) { return c.Model().Cols(); }, [](C& c, std::int32_t v) { LoadCols(c.Model(), v); })
            .Long(
                u"FixedCols", 1, [](C& c) { return c.Model().WantedFixedCols(); },
                [](C& c, std::int32_t v) { LoadFixedCols(c.Model(), v); })
            .Long(
                u"FixedRows", 1, [](C& c) { return c.Model().WantedFixedRows(); },
                [](C& c, std::int32_t v) { LoadFixedRows(c.Model(), v); })
            .Member(u"BackColorBkg", &Grid::BackColorBkg, &Grid::SetBackColorBkg)
            .Field(u"InActiveColumns", &ControlState::inActiveColumns)
            .Field(u"ListColumns", &ControlState::listColumns)
            .Field(u"UnChangableColumns", &ControlState::unChangableColumns)
            .Member(u"AllowUserResizing", &Grid::AllowUserResizing, &Grid::SetAllowUserResizing)
            .Field(u"AutoAddNew", &ControlState::autoAddNew)
            .Field(u"AutoRecordNumber", &ControlState::autoRecordNumber)
            .Field(u"ColumnsDataType", &ControlState::columnsDataType)
            .Field(u"RequiredFields", &ControlState::requiredFields)
            .Member(u"Appearance", flexgrid::GridAppearance::flat, &Grid::Appearance, &Grid::SetAppearance)
            .Member(u"BackColor", &Grid::BackColor, &Grid::SetBackColor)
            .Member(u"BackColorSel", &Grid::BackColorSel, &Grid::SetBackColorSel)
            .Member(u"FocusRect", &Grid::FocusRect, &Grid::SetFocusRect)
            .Member(u"ForeColor", &Grid::ForeColor, &Grid::SetForeColor)
            .Member(u"ForeColorFixed", &Grid::ForeColorFixed, &Grid::SetForeColorFixed)
            .Member(u"ForeColorSel", &Grid::ForeColorSel, &Grid::SetForeColorSel)
            .Member(u"FormatString", &Grid::FormatString, &Grid::SetFormatString)
            .Member(u"GridColor", &Grid::GridColor, &Grid::SetGridColor)
            .Member(u"GridColorFixed", &Grid::GridColorFixed, &Grid::SetGridColorFixed)
            .Member(u"GridLines", &Grid::GridLines, &Grid::SetGridLines)
            .Member(u"GridLinesFixed", &Grid::GridLinesFixed, &Grid::SetGridLinesFixed)
            .Member(u"HighLight", &Grid::HighLight, &Grid::SetHighLight)
            .Member(u"MergeCells", &Grid::MergeCells, &Grid::SetMergeCells)
            .Member(u"ScrollBars", &Grid::ScrollBars, &Grid::SetScrollBars)
            .Member(u"ScrollTrack", true, &Grid::ScrollTrack, &Grid::SetScrollTrack)
            .Member(u"SelectionMode", &Grid::SelectionMode, &Grid::SetSelectionMode)
            .Long(
                u"ColAlignment0", 0,
                [](C& c) { return HasCells(c.Model()) ? static_cast<std::int32_t>(c.Model().ColAlignment(0)) : 0; },
                [](C& c, std::int32_t v) { c.Model().SetColAlignment(0, CheckedEnum<flexgrid::GridAlignment>(v)); })
            .Long(
                u"ColWidth0", 0, [](C& c) { return HasCells(c.Model()) ? c.Model().ColWidth(0) : 0; },
                [](C& c, std::int32_t v) { c.Model().SetColWidth(0, v); })
            .String(
                u"TextArray0", u"", [](C& c) { return HasCells(c.Model()) ? c.Model().TextArray(0) : Text(); },
                [](C& c, const Text& v) { c.Model().SetTextArray(0, v); })
            .String(
                u"TextMatrix0", u"", [](C& c) { return HasCells(c.Model()) ? CurrentText(c.Model()) : Text(); },
                [](C& c, const Text& v) { c.Model().SetTextMatrix(c.Model().Row(), c.Model().Col(), v); })
            .Field(u"ProjectSelection", &ControlState::projectSelection)
            .Field(u"InVisibleColumns", &ControlState::inVisibleColumns)
            .Field(u"CheckValueFor", &ControlState::checkValueFor)
            .Field(u"AutoTab", &ControlState::autoTab)
            .Long(
                u"BindFrom", ControlState{}.bindFrom, [](C& c) { return c.State().bindFrom; },
                [](C& c, std::int32_t v) { c.State().bindFrom = CheckedInteger(v); })
            .Member(u"Enabled", &Grid::Enabled, &Grid::SetEnabled)
            .Member(u"BorderStyle", &Grid::BorderStyle, &Grid::SetBorderStyle)
            .Field(u"ProjectionBold", &ControlState::projectionBold)
            .Field(u"CellToolTip", &ControlState::cellToolTip)
            .Long(
                u"KeyColumn", ControlState{}.keyColumn, [](C& c) { return c.State().keyColumn; },
                [](C& c, std::int32_t v) { c.State().keyColumn = CheckedInteger(v); })
            .Field(u"DateFormat", &ControlState::dateFormat)
            .Member(u"BackColorFixed", &Grid::BackColorFixed, &Grid::SetBackColorFixed)
            .Field(u"NonFocusColumns", &ControlState::nonFocusColumns)
            .Field(u"ColumnsMaxLength", &ControlState::columnsMaxLength)
            .Field(u"ExtendedKeys", &ControlState::extendedKeys)
            .Field(u"KeepUnchanged", &ControlState::keepUnchanged)
            .Field(u"SortOnHeader", &ControlState::sortOnHeader)
            .Field(u"MarkInvalid", &ControlState::markInvalid)
            .Field(u"ContextMenu", &ControlState::contextMenu)
            .Field(u"ValidateColumns", &ControlState::validateColumns)
            .Field(u"OnErrorFirst", &ControlState::onErrorFirst)
            .Field(u"FindBar", &ControlState::findBar)
            .Member(u"ListArrows", ListArrows::none, &EntryGrid::ListArrows, &EntryGrid::SetListArrows)
            .Member(u"ListMatch", ListMatch::beginnings, &EntryGrid::ListMatch, &EntryGrid::SetListMatch)
            .Field(u"ListClickCommits", &ControlState::listClickCommits)
            .Field(u"KeepEditing", &ControlState::keepEditing)
            .Field(u"FitColumns", &ControlState::fitColumns)
            .Field(u"MoveColumns", &ControlState::moveColumns)
            .Member(u"Footer", Text(), &EntryGrid::Footer, &EntryGrid::SetFooter)
            .Member(u"FilterRow", false, &EntryGrid::FilterRow, &EntryGrid::SetFilterRow)
            .Member(u"TrackRows", false, &EntryGrid::TrackRows, &EntryGrid::SetTrackRows)
            .Field(u"MarkChanged", &ControlState::markChanged)
            .Field(u"BindFields", &ControlState::bindFields)
            .Member(u"FrozenCols", &Grid::FrozenCols, &Grid::SetFrozenCols)
            .Member(u"ColumnFormats", Text(), &EntryGrid::ColumnFormats, &EntryGrid::SetColumnFormats)
            .Done();
    return table;
}

}  // namespace qvx::grid
