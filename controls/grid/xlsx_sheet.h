// Cells as the sheet of a workbook (Office Open XML).
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "controls/grid/table_export.h"

namespace qvx::grid {

// Cells of digits and numerics columns are numbers where the whole text is one, of at most the 15 digits that a number
// holds; cells of date columns are dates where they are in the date format and after February 1900, from which on all
// programs count the days alike. Everything else is text. Header rows are bold and do not scroll. Raises error 5 for
// more rows or columns than a sheet has, and AddRow for a text longer than a cell's.
std::unique_ptr<TableWriter> MakeXlsxWriter(const ExportOptions& options, const ExportedCells& cells,
                                            ExportBlocks& blocks);

// Returns a date's number in a sheet; nullopt for a text that is not a date in this format, and for one before March
// 1900.
std::optional<double> SheetDate(TextView text, TextView dateFormat, const DateSettings& settings);

// Returns the number format that shows dates as the pattern of FormatDate does.
Text SheetDateFormat(TextView pattern);

// Appends a text in UTF-8, with the characters that XML cannot contain in the sheet's own form.
void AppendSheetText(std::string& to, TextView text);

}  // namespace qvx::grid
