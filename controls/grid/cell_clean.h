// What a typed text becomes when it is committed into a column with a data type. Nothing here fails: text that cannot
// be read becomes 0 or nothing.
#pragma once

#include "common/dates.h"
#include "common/text.h"

namespace qvx::grid {

// "%" removed, read as a number, written without its point: 12.5 gives 125, "" gives 0.
Text CleanDigits(TextView text);

// "%" removed, read as a number and written back: 12abc gives 12, "" gives 0.
Text CleanNumber(TextView text);

// The date in `dateFormat`, or "" when the text is no date.
Text CleanDate(TextView text, TextView dateFormat, const DateSettings& settings);

// The date in the short form, or "" when the text is no date. "." "-" and "," count as "/". Under the four formats of
// month and year alone, a text of two parts is the first of that month, whatever the system's own order.
Text NormalizeDate(TextView text, TextView dateFormat, const DateSettings& settings);

// Cleans by the first of the codes 0, 1, 2 that the column with this caption carries in the coded list; without any
// the text stays as it is.
Text CleanCell(TextView text, TextView columnsDataType, TextView caption, TextView dateFormat,
               const DateSettings& settings);

// The same in two halves, for many cells of one column: the code (noCleaning for none), and what it does.
constexpr int noCleaning = -1;
int CleaningCode(TextView columnsDataType, TextView caption);
Text CleanByCode(TextView text, int code, TextView dateFormat, const DateSettings& settings);

}  // namespace qvx::grid
