// Numbers in cells, shown in a format of their column.
#pragma once

#include "common/locale.h"
#include "common/text.h"

namespace qvx::grid {

enum class FormatKind { number, date };

// A format with "0" or "#" is for numbers, another one with any of d, m, y and h for dates. One without either replaces
// every number by its own text.
FormatKind KindOfFormat(TextView format);

// Writes a number by a format: "0" is a digit or zero, "#" a digit where there is one, "." before either of them the
// decimal point, "," between them separates thousands, "%" multiplies by 100, and all other characters are shown as
// they are, as are those after "\" and in quotation marks. Up to three formats, separated by ";", are for positive and
// other numbers, for negative ones (without their sign) and for zero. Decimals are rounded half away from zero, from
// the digits of the text, however many there are. Returns the text itself if it is not digits with or without a sign
// and a decimal point ".".
Text FormattedNumber(TextView text, TextView format, const NumberSigns& signs);

// Returns the format in the form that spreadsheets read, in which each character that is shown as it is follows a "\".
Text SheetNumberFormat(TextView format);

}  // namespace qvx::grid
