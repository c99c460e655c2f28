// Cells as a table in an HTML document.
#pragma once

#include <memory>

#include "controls/grid/table_export.h"

namespace qvx::grid {

// A document in UTF-8. Header rows have th cells; alignments are those of the columns. A character that HTML cannot
// contain becomes U+FFFD.
std::unique_ptr<TableWriter> MakeHtmlWriter(const ExportedCells& cells, ExportBlocks& blocks);

// Appends a text as the contents of an element.
void AppendHtmlText(Text& to, TextView text);

// Returns where a column's texts are: "left", "center" or "right".
TextView HtmlAlignment(const ExportColumn& column);

}  // namespace qvx::grid
