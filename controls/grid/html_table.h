// Cells as a table in an HTML document.
#pragma once

#include <memory>

#include "controls/grid/table_export.h"

namespace qvx::grid {

// A document in UTF-8. Header rows have th cells; alignments are those of the columns. A character that HTML cannot
// contain becomes U+FFFD.
std::unique_ptr<TableWriter> MakeHtmlWriter(const ExportedCells& cells, ExportBlocks& blocks);

}  // namespace qvx::grid
