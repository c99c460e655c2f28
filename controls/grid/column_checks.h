// What is checked in the cells of a column.
#pragma once

#include <vector>

#include "common/text.h"
#include "controls/grid/control_state.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

// The rules for a cell's number, by their codes in CheckValueFor.
namespace sign_rule {
constexpr int negative = 0;
constexpr int notPositive = 1;
constexpr int positive = 2;
constexpr int notNegative = 3;
constexpr int notZero = 4;
constexpr int count = 5;
}  // namespace sign_rule

// Which rule a cell breaks; the values are those of the published GridRule.
enum class CellRule { none, required, sign, host };

// A column that has something to check; most have nothing.
struct CheckedColumn {
    int col = 0;
    bool required = false;
    bool asksHost = false;
    std::vector<int> signs;
};

// Returns the columns that have rules, in their order; those of ValidateColumns with `askHost` only.
std::vector<CheckedColumn> CheckedColumns(const flexgrid::Grid& grid, const ControlState& state, bool askHost);

// Whether a number keeps a rule for its sign.
bool KeepsSign(double number, int rule);

// What the grid's own rules say of a cell: "" for one that passes.
struct Verdict {
    CellRule rule = CellRule::none;
    TextView message;  // for the user
};
Verdict VerdictOn(flexgrid::CellView cell, const CheckedColumn& column);

}  // namespace qvx::grid
