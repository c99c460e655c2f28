// Numbers read from text the way hosts read them: "." is the decimal point whatever the locale.
#pragma once

#include <optional>
#include <string_view>

#include "common/text.h"

namespace qvx {

// Reads the number at the start of a text. Blanks, tabs and line feeds are skipped anywhere. A number has an optional
// sign, digits with at most one ".", and an optional exponent (E or D). Alternatively, without a sign, it is &H and
// hexadecimal or &O (or a bare &) and octal digits, which are 16-bit signed while they fit, otherwise 32-bit signed,
// and always 32-bit when closed by "&". Reading stops at the first character that cannot continue the number; nothing
// readable gives 0. Throws error 6 for more than a double (or 32 bits after &H and &O) can hold, and for a whole number
// too large for the type character % (16 bits) or & (32 bits) directly after it; error 13 for either type character
// after a fraction or an exponent.
double Val(TextView text);

// Reads a whole text as a number; nullopt if it is not one. The text may have blanks and tabs around the number, a sign
// before or after it, digits with at most one "." and at least one digit, digit-group commas after the first digit of
// the whole part, and an exponent (E only). A value that a double cannot hold is no number.
std::optional<double> ReadNumeric(TextView text) noexcept;

// Returns whether ReadNumeric finds a number.
bool IsNumeric(TextView text) noexcept;

// The tolerant reading used for every cell and entry: the value that Val reads; where Val would raise an error, the
// longest leading run of "+-.0123456789" if that is numeric; otherwise 0. Never fails.
double NumericValue(TextView text) noexcept;

// The same for text with one byte per character (Latin-1), as the grid stores most rows.
double NumericValue(std::string_view latin1) noexcept;

}  // namespace qvx
