// The cleaning of a typed text that is committed into a column with a data type. Nothing here fails: text that cannot
// be read becomes 0 or "".
#pragma once

#include "common/dates.h"
#include "common/text.h"

namespace qvx::grid {

// Removes "%", reads the text as a number and writes it without the decimal point: "12.5" gives "125", "" gives "0".
Text CleanDigits(TextView text);

// Removes "%", reads the text as a number and writes it back: "12abc" gives "12", "" gives "0".
Text CleanNumber(TextView text);

// Returns the date in `dateFormat`, or "" when the text is not a date.
Text CleanDate(TextView text, TextView dateFormat, const DateSettings& settings);

// Returns the date in the short form, or "" when the text is not a date. ".", "-" and "," count as "/". With the four
// formats that have only month and year, a text of two parts is the first day of that month, whatever the system's own
// order.
Text NormalizeDate(TextView text, TextView dateFormat, const DateSettings& settings);

// Cleans by the first of the codes 0, 1, 2 that the column with this caption has in the coded list; without any of them
// the text is unchanged.
Text CleanCell(TextView text, TextView columnsDataType, TextView caption, TextView dateFormat,
               const DateSettings& settings);

// Do the same in two steps, for many cells of one column: the first returns the code (noCleaning for none), the second
// cleans by it.
constexpr int noCleaning = -1;
int CleaningCode(TextView columnsDataType, TextView caption);
Text CleanByCode(TextView text, int code, TextView dateFormat, const DateSettings& settings);

}  // namespace qvx::grid
