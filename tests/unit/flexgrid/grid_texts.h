// The common parts of the grid's tests: filling it, a grid as text, and the errors that it raises.
#pragma once

#include <functional>
#include <sstream>
#include <string>

#include "tests/support/error_of.h"
#include "tests/support/narrow.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::flexgrid {

using test::ErrorOf;

// Returns all rows as one text, "a,b/c,d".
inline std::string Shown(const Grid& grid) {
    std::string shown;
    for (int row = 0; row < grid.Rows(); ++row) {
        shown += row > 0 ? "/" : "";
        for (int col = 0; col < grid.Cols(); ++col) {
            shown += col > 0 ? "," : "";
            shown += test::Narrow(grid.TextMatrix(row, col));
        }
    }
    return shown;
}

inline void Load(Grid& grid, int fixedRows, int fixedCols, int cols, TextView block) {
    grid.SetFixedRows(0);
    grid.SetFixedCols(0);
    grid.SetRows(0);
    grid.SetCols(cols);
    grid.AddItems(block);
    grid.SetFixedRows(fixedRows);
    grid.SetFixedCols(fixedCols);
}

inline std::string Bytes(TextView text) {
    std::string bytes;
    for (const char16_t unit : text) {
        bytes += unit < 0x80 ? std::string(1, static_cast<char>(unit)) : "<" + std::to_string(unit) + ">";
    }
    return bytes;
}

inline void DescribeFormat(std::ostream& out, const CellFormat& format) {
    out << '{' << format.backColor << ' ' << format.foreColor << ' ' << Bytes(format.fontName.value_or(u"-")) << ' '
        << format.fontSize.value_or(-1) << ' ' << format.fontBold.value_or(false)
        << static_cast<int>(format.alignment.value_or(GridAlignment::general)) << '}';
}

// Returns all observable values of a grid.
inline std::string Describe(const Grid& grid) {
    std::ostringstream out;
    const Cursor cursor = grid.CurrentCursor();
    out << grid.Rows() << 'x' << grid.Cols() << " fixed " << grid.FixedRows() << 'x' << grid.FixedCols() << " cursor "
        << cursor.row << ',' << cursor.col << '-' << cursor.rowSel << ',' << cursor.colSel << " view " << grid.TopRow()
        << ',' << grid.LeftCol() << " font " << Bytes(grid.Font().face) << ' ' << grid.Font().points << ' '
        << grid.RowHeightMin() << " format " << Bytes(grid.FormatString()) << "\ncolumns";
    for (int col = 0; col < grid.Cols(); ++col) {
        out << " [" << grid.ColWidth(col) << ' ' << static_cast<int>(grid.ColAlignment(col))
            << static_cast<int>(grid.FixedAlignment(col)) << ' ' << grid.ColData(col) << ' ' << grid.MergeCol(col)
            << ' ' << grid.ColLeft(col) << ']';
    }
    for (int row = 0; row < grid.Rows(); ++row) {
        out << '\n'
            << row << ": " << grid.RowHeight(row) << ' ' << grid.RowTop(row) << ' ' << grid.RowData(row) << ' '
            << grid.MergeRow(row) << (grid.RowFiltered(row) ? " filtered " : " ");
        for (int col = 0; col < grid.Cols(); ++col) {
            out << '|' << Bytes(grid.TextMatrix(row, col));
            if (const CellFormat* format = grid.FormatOf(row, col)) {
                DescribeFormat(out, *format);
                out << Bytes(grid.FontOf(row, col).face);
            }
        }
    }
    return out.str();
}

// A listener that meddles with the grid whenever the cursor leaves a cell.
class Meddler final : public GridListener {
  public:
    Meddler(Grid& grid, std::function<void(Grid&)> act) : grid_(grid), act_(std::move(act)) { grid_.AddListener(this); }
    ~Meddler() override { grid_.RemoveListener(this); }
    Meddler(const Meddler&) = delete;
    Meddler& operator=(const Meddler&) = delete;
    void LeaveCell() override { act_(grid_); }

  private:
    Grid& grid_;
    std::function<void(Grid&)> act_;
};

}  // namespace qvx::flexgrid
