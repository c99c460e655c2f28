#include "controls/grid/validation.h"

#include <algorithm>
#include <array>
#include <vector>

#include "controls/grid/cell_reading.h"
#include "controls/grid/column_lists.h"
#include "dialogs/messages.h"

namespace qvx::grid {
namespace {

namespace messages = dialogs::messages;

constexpr std::array<TextView, sign_rule::count> brokenRule{messages::lessThanZeroPrompt, messages::atMostZeroPrompt,
                                                            messages::greaterThanZeroPrompt,
                                                            messages::atLeastZeroPrompt, messages::zeroValuePrompt};

bool Keeps(double number, int rule) {
    switch (rule) {
        case sign_rule::negative:
            return number < 0;
        case sign_rule::notPositive:
            return number <= 0;
        case sign_rule::positive:
            return number > 0;
        case sign_rule::notNegative:
            return number >= 0;
        default:
            return number != 0;
    }
}

// A column that has something to check; most have nothing.
struct Checked {
    int col = 0;
    bool required = false;
    std::vector<int> rules;
};

std::vector<Checked> CheckedColumns(const flexgrid::Grid& grid, const ControlState& state) {
    std::vector<Checked> columns;
    for (int col = 0; col < grid.Cols(); ++col) {
        Checked checked{col, IsListedColumn(grid, state.requiredFields, col), {}};
        for (int rule = 0; rule < sign_rule::count; ++rule)
            if (HasColumnCode(grid, state.checkValueFor, col, rule)) checked.rules.push_back(rule);
        if (checked.required || !checked.rules.empty()) columns.push_back(std::move(checked));
    }
    return columns;
}

// Returns the message for an invalid cell; empty when the cell passes.
TextView Verdict(flexgrid::CellView cell, const Checked& column) {
    if (column.required && IsBlank(cell)) return messages::invalidDataPrompt;
    if (column.rules.empty()) return {};
    const double number = NumberIn(cell);
    for (const int rule : column.rules)
        if (!Keeps(number, rule)) return brokenRule[static_cast<std::size_t>(rule)];
    return {};
}

// Checks whether all cells of a row pass, grouped by the kind of check: nearly all rows pass, and for them the order of
// the cells does not matter.
class RowCheck {
  public:
    explicit RowCheck(const std::vector<Checked>& columns) {
        for (const Checked& column : columns) {
            if (column.required) required_.push_back(column.col);
            if (!column.rules.empty()) ruled_.push_back({column.col, KeepingSigns(column.rules)});
        }
    }

    bool Passes(const flexgrid::RowView& cells) const {
        return cells.IsShort() ? PassesAll(flexgrid::ShortRow(cells)) : PassesAll(cells);
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
            if (std::all_of(rules.begin(), rules.end(), [&](int rule) { return Keeps(number, rule); }))
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

}  // namespace

std::optional<InvalidCell> FindInvalidCell(const flexgrid::Grid& grid, const ControlState& state) {
    constexpr int firstRow = 1;
    if (grid.Rows() <= firstRow) return std::nullopt;
    const std::vector<Checked> columns = CheckedColumns(grid, state);
    if (columns.empty()) return std::nullopt;
    const RowCheck check(columns);
    std::optional<InvalidCell> found;
    grid.ForEachRow(firstRow, grid.Rows() - 1, [&](int row, const flexgrid::RowView& cells) {
        if (found || check.Passes(cells)) return;
        for (const Checked& column : columns) {
            if (const TextView message = Verdict(cells[column.col], column); !message.empty()) {
                found = InvalidCell{row, column.col, message};
                return;
            }
        }
    });
    return found;
}

}  // namespace qvx::grid
