// The selected cells in the forms in which the clipboard has them: including hidden ones, but not those of rows that
// are filtered out.
#pragma once

#include <optional>
#include <string>

#include "common/text.h"
#include "controls/grid/control_state.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

// Returns text, with tabs between cells; nullopt without any cell.
std::optional<Text> CopiedText(const flexgrid::Grid& grid);

// Returns a table in the clipboard's form of HTML, so that word processors and mail programs receive one. Returns
// nullopt for a single cell, which is to be pasted as a text into a sentence, and for more than 100,000 cells, which
// would take other programs minutes.
std::optional<std::string> CopiedHtml(const flexgrid::Grid& grid, const ControlState& state);

}  // namespace qvx::grid
