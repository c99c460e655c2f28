// The search for a record that exists twice.
#pragma once

#include <optional>

#include "common/text.h"
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

// Returns the message that names the two rows to the user.
Text DuplicatesPrompt(const RowPair& rows);

}  // namespace qvx::grid
