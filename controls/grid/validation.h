// The check of a whole grid before its entries are saved.
#pragma once

#include <functional>
#include <optional>

#include "common/text.h"
#include "controls/grid/column_checks.h"
#include "controls/grid/control_state.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

struct InvalidCell {
    int row = 0;
    int col = 0;
    CellRule rule = CellRule::none;
    Text message;  // for the user
};

// Where a check begins, and whether it ends with that row.
struct CheckStart {
    int row = 1;
    int col = 0;
    bool rowOnly = false;
};

// Returns the start after a cell; row 0 means the whole grid, and column -1 that the row begins with its first cell.
// Raises the errors of Row and Col for a cell that the grid does not have.
CheckStart StartAfter(const flexgrid::Grid& grid, long row, long col, bool rowOnly);

// Asks the host about a cell of ValidateColumns: `message` is what the grid's own rules say, "" for a cell that passes,
// and the result replaces it. The host may change the grid meanwhile.
using AskHost = std::function<Text(int row, int col, const Text& text, const Text& message)>;

// Returns the first cell, row by row from row 1 on and in every column, that lacks required data (only blanks count as
// none) or whose number, 0 if it has none, breaks a rule of its column; the rules are checked in the order of their
// codes. Without `askHost`, ValidateColumns counts for nothing.
std::optional<InvalidCell> FindInvalidCell(const flexgrid::Grid& grid, const ControlState& state,
                                           const CheckStart& start = {}, const AskHost& askHost = {});

}  // namespace qvx::grid
