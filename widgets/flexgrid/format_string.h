// The format string: column headers and row captions, alignments and widths, all in one text.
//
//     "<Name     |>Price|^Unit"          three columns: left, right, centred; widths from the texts, blanks included
//     "|Qty|Rate;|First|Second"          after ";" the captions of rows 0, 1, 2 in column 0
//
// A segment of columns becomes the header in row 0; an empty one leaves the column's width unchanged. A row caption
// goes into column 0; an empty one leaves the cell unchanged, and column 0 becomes as wide as the longest caption. Rows
// and columns are added when there are too few, and never removed. Without any text before ";", no column changes.
#pragma once

#include <optional>
#include <vector>

#include "common/text.h"
#include "widgets/flexgrid/enums.h"

namespace qvx::flexgrid {

struct FormatSegment {
    std::optional<GridAlignment> alignment;  // left, centre or right; vertically centred
    TextView text;                           // within the format string
};

struct ParsedFormat {
    std::vector<FormatSegment> columns;
    std::vector<FormatSegment> rows;
};

ParsedFormat ParseFormatString(TextView format);

}  // namespace qvx::flexgrid
