#include "controls/grid/validation.h"

#include <algorithm>
#include <vector>

#include "controls/grid/cell_reading.h"
#include "controls/grid/column_checks.h"
#include "widgets/flexgrid/grid_errors.h"

namespace qvx::grid {
namespace {

// Checks whether all cells of a row pass, grouped by the kind of check: nearly all rows pass, and for them the order of
// the cells does not matter.
class RowCheck {
  public:
    explicit RowCheck(const std::vector<CheckedColumn>& columns) {
        for (const CheckedColumn& column : columns) {
            if (column.required) required_.push_back(column.col);
            if (!column.signs.empty()) ruled_.push_back({column.col, KeepingSigns(column.signs)});
        }
    }

    bool Passes(const flexgrid::RowView& cells) const {
        return flexgrid::WithCells(cells, [&](const auto& row) { return PassesAll(row); });
    }

  private:
    // `signs` has a bit each for numbers below, equal to and above 0.
    struct Ruled {
        int col;
        unsigned signs;
    };

    static unsigned SignOf(double number) { return number > 0 ? 4U : number < 0 ? 1U : 2U; }
    static unsigned KeepingSigns(const std::vector<int>& rules) {
        unsigned signs = 0;
        for (const double number : {-1.0, 0.0, 1.0})
            if (std::all_of(rules.begin(), rules.end(), [&](int rule) { return KeepsSign(number, rule); }))
                signs |= SignOf(number);
        return signs;
    }

    template <class Row>
    bool PassesAll(const Row& cells) const {
        for (const int col : required_)
            if (IsBlank(cells[col])) return false;
        for (const Ruled& ruled : ruled_)
            if ((SignOf(NumberIn(cells[ruled.col])) & ruled.signs) == 0) return false;
        return true;
    }

    std::vector<int> required_;
    std::vector<Ruled> ruled_;
};

std::optional<InvalidCell> FindByOwnRules(const flexgrid::Grid& grid, const std::vector<CheckedColumn>& columns,
                                          const CheckStart& start, int lastRow) {
    const RowCheck check(columns);
    std::optional<InvalidCell> found;
    grid.ForEachRow(start.row, lastRow, [&](int row, const flexgrid::RowView& cells) {
        if (found || check.Passes(cells)) return;
        for (const CheckedColumn& column : columns) {
            if (row == start.row && column.col < start.col) continue;
            const Verdict verdict = VerdictOn(cells[column.col], column);
            if (verdict.rule == CellRule::none) continue;
            found = InvalidCell{row, column.col, verdict.rule, Text(verdict.message)};
            return;
        }
    });
    return found;
}

// The host may remove rows and columns while it is asked.
std::optional<InvalidCell> FindWithHost(const flexgrid::Grid& grid, const std::vector<CheckedColumn>& columns,
                                        const CheckStart& start, int lastRow, const AskHost& askHost) {
    for (int row = start.row; row <= lastRow; ++row) {
        for (const CheckedColumn& column : columns) {
            if (row >= grid.Rows() || column.col >= grid.Cols()) continue;
            if (row == start.row && column.col < start.col) continue;
            const Verdict verdict = VerdictOn(grid.Cell(row, column.col), column);
            InvalidCell cell{row, column.col, verdict.rule, Text(verdict.message)};
            if (column.asksHost)
                cell.message = askHost(row, column.col, grid.TextMatrix(row, column.col), cell.message);
            if (cell.message.empty()) continue;
            if (cell.rule == CellRule::none) cell.rule = CellRule::host;
            return cell;
        }
    }
    return std::nullopt;
}

}  // namespace

CheckStart StartAfter(const flexgrid::Grid& grid, long row, long col, bool rowOnly) {
    if (row < 0 || (row > 0 && row >= grid.Rows())) flexgrid::RefuseRow();
    if (col < -1 || (col > 0 && col >= grid.Cols())) flexgrid::RefuseCol();
    if (row == 0) return {.rowOnly = rowOnly};
    return {static_cast<int>(row), static_cast<int>(col) + 1, rowOnly};
}

std::optional<InvalidCell> FindInvalidCell(const flexgrid::Grid& grid, const ControlState& state,
                                           const CheckStart& start, const AskHost& askHost) {
    const int lastRow = start.rowOnly ? std::min(start.row, grid.Rows() - 1) : grid.Rows() - 1;
    if (start.row < 1 || start.row > lastRow) return std::nullopt;
    const std::vector<CheckedColumn> columns = CheckedColumns(grid, state, askHost != nullptr);
    if (columns.empty()) return std::nullopt;
    const bool asks = std::any_of(columns.begin(), columns.end(), [](const CheckedColumn& c) { return c.asksHost; });
    return asks ? FindWithHost(grid, columns, start, lastRow, askHost) : FindByOwnRules(grid, columns, start, lastRow);
}

}  // namespace qvx::grid
