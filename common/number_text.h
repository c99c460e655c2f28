// Numbers written as text, and rounded to whole numbers, the way hosts do it: "." is the decimal point, and there is no
// blank before a number.
#pragma once

#include <array>
#include <cstdint>

#include "common/text.h"

namespace qvx {

// Writes at most 15 significant digits, without trailing zeros; whole numbers without a point; an exponent of at least
// two digits (1E+15, 1.5E-05) from 1E+15 up and below 0.0001. Minus zero gives "0"; values that are not finite give
// "1.#INF", "-1.#INF" or "1.#QNAN".
Text DoubleToText(double value);
// Does the same without an allocation, for many numbers in a row; the text is in `buffer`, which is large enough for
// any.
using NumberBuffer = std::array<char16_t, 32>;
TextView DoubleToText(double value, NumberBuffer& buffer);

// Writes a whole number in decimal, with "-" if it is negative.
Text IntegerToText(std::int64_t value);

// Writes exactly `decimals` (0 to 32767) digits after the point (no point for 0), and at least one digit before it; the
// 15-digit decimal form is rounded half away from zero (12.345 with 2 decimals gives "12.35"). A result that is zero
// has no sign.
Text FormatFixed(double value, int decimals);

// Rounds half to even: 2.5 gives 2, 3.5 gives 4.
double RoundHalfEven(double value);

// Rounds half to even to a 32-bit whole number. Throws error 6 "Overflow" for a value that does not fit or is not a
// number.
std::int32_t RoundToLong(double value);

}  // namespace qvx
