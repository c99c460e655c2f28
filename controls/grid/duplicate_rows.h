// Finding a record that is there twice.
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

// The first data row that has its equal further down, and the first of its equals there. Rows are equal when their keys
// are (row_key.h), `firstCol` being the first column that counts; so rows without any text are, too.
//
// Takes time and memory linear in the number of rows: twelve to twenty-four bytes a row, however long the texts are.
std::optional<RowPair> FirstDuplicate(const flexgrid::Grid& grid, int firstCol);

// What the user is told of it.
Text DuplicatesPrompt(const RowPair& rows);

}  // namespace qvx::grid
