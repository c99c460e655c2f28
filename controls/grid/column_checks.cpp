#include "controls/grid/column_checks.h"

#include <array>

#include "controls/grid/cell_reading.h"
#include "controls/grid/column_lists.h"
#include "dialogs/messages.h"

namespace qvx::grid {
namespace {

namespace messages = dialogs::messages;

constexpr std::array<TextView, sign_rule::count> brokenRule{messages::lessThanZeroPrompt, messages::atMostZeroPrompt,
                                                            messages::greaterThanZeroPrompt,
                                                            messages::atLeastZeroPrompt, messages::zeroValuePrompt};

}  // namespace

bool KeepsSign(double number, int rule) {
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

std::vector<CheckedColumn> CheckedColumns(const flexgrid::Grid& grid, const ControlState& state, bool askHost) {
    std::vector<CheckedColumn> columns;
    for (int col = 0; col < grid.Cols(); ++col) {
        CheckedColumn checked{col,
                              IsListedColumn(grid, state.requiredFields, col),
                              askHost && IsListedColumn(grid, state.validateColumns, col),
                              {}};
        for (int rule = 0; rule < sign_rule::count; ++rule)
            if (HasColumnCode(grid, state.checkValueFor, col, rule)) checked.signs.push_back(rule);
        if (checked.required || checked.asksHost || !checked.signs.empty()) columns.push_back(std::move(checked));
    }
    return columns;
}

Verdict VerdictOn(flexgrid::CellView cell, const CheckedColumn& column) {
    if (column.required && IsBlank(cell)) return {CellRule::required, messages::invalidDataPrompt};
    if (column.signs.empty()) return {};
    const double number = NumberIn(cell);
    for (const int rule : column.signs)
        if (!KeepsSign(number, rule)) return {CellRule::sign, brokenRule[static_cast<std::size_t>(rule)]};
    return {};
}

}  // namespace qvx::grid
