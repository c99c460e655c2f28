// The search for a record that exists twice.
#pragma once

#include <optional>

#include "common/text.h"
#include "controls/grid/control_state.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

struct RowPair {
    int first = 0;
    int second = 0;
    friend bool operator==(const RowPair&, const RowPair&) = default;
};

// Returns the first data row that has an equal row further down, and the first of its equals there. Rows are equal when
// their keys are (row_key.h), where `firstCol` is the first column that counts; so rows without any text are equal too.
//
// Takes time and memory linear in the number of rows: twelve to twenty-four bytes a row, regardless of the length of
// the texts.
std::optional<RowPair> FirstDuplicate(const flexgrid::Grid& grid, int firstCol);

// Does the same for rows whose cells are equal, each without regard to case, in all columns of a list of captions; for
// whole rows without a list. Throws error 380 when no column is listed.
std::optional<RowPair> FirstDuplicateIn(const flexgrid::Grid& grid, const ControlState& state, TextView columns);

// Returns the message that names the two rows to the user.
Text DuplicatesPrompt(const RowPair& rows);

}  // namespace qvx::grid
