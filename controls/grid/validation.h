// The check of a whole grid before its entries are saved.
#pragma once

#include <optional>

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

struct InvalidCell {
    int row = 0;
    int col = 0;
    TextView message;  // for the user
};

// Returns the first cell, row by row from row 1 on and in every column, that lacks required data (only blanks count as
// none) or whose number, 0 if it has none, breaks a rule of its column; the rules are checked in the order of their
// codes.
std::optional<InvalidCell> FindInvalidCell(const flexgrid::Grid& grid, const ControlState& state);

}  // namespace qvx::grid
