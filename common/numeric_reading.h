// Numbers read from text the way hosts read them: "." is the decimal point whatever the locale.
#pragma once

#include <optional>
#include <string_view>

#include "common/text.h"

namespace qvx {

// The number at the start of a text. Blanks, tabs and line feeds are skipped wherever they stand; then an optional
// sign, digits with at most one ".", an optional exponent (E or D); or, without a sign, &H and hexadecimal or &O (or a
// bare &) and octal digits, which are 16-bit signed while they fit there, else 32-bit signed, and always 32-bit when
// closed by "&". Reading stops at the first character that cannot go on; nothing readable gives 0. Error 6 for more
// than a double (or 32 bits behind &H and &O) can hold, and for a whole number too large for the type character % (16
// bits) or & (32 bits) directly behind it; error 13 for either behind a fraction or an exponent.
double Val(TextView text);

// The number a whole text stands for, or nothing when it is not one: optional blanks and tabs around, an optional sign
// before or behind, digits with at most one "." and at least one digit, digit-group commas behind the first digit of
// the whole part, an optional exponent (E only). What a double cannot hold is no number.
std::optional<double> ReadNumeric(TextView text) noexcept;

// Whether ReadNumeric finds a number.
bool IsNumeric(TextView text) noexcept;

// The tolerant reading used for every cell and entry: what Val reads; where Val would raise an error, the longest
// leading run of "+-.0123456789" if that is numeric; else 0. Never fails.
double NumericValue(TextView text) noexcept;

// The same for text of one byte a character (Latin-1), as the grid stores most rows.
double NumericValue(std::string_view latin1) noexcept;

}  // namespace qvx
