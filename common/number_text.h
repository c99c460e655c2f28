// Numbers written as text, and rounded to whole numbers, the way hosts do it: "." is the decimal point, no blank in
// front.
#pragma once

#include <array>
#include <cstdint>

#include "common/text.h"

namespace qvx {

// At most 15 significant digits, without trailing zeros; whole numbers without a point; an exponent of at least two
// digits (1E+15, 1.5E-05) from 1E+15 up and below 0.0001. Minus zero gives "0"; what is no finite number "1.#INF",
// "-1.#INF" or "1.#QNAN".
Text DoubleToText(double value);
// The same without an allocation, for many numbers one after the other; the text lies in `buffer`, which holds any.
using NumberBuffer = std::array<char16_t, 32>;
TextView DoubleToText(double value, NumberBuffer& buffer);

Text IntegerToText(std::int64_t value);

// Exactly `decimals` (0 to 32767) digits behind the point, none without one, at least one digit before it; the 15-digit
// decimal form is rounded half away from zero (12.345 with 2 decimals gives "12.35"). A result that is zero has no
// sign.
Text FormatFixed(double value, int decimals);

// Half to even: 2.5 gives 2, 3.5 gives 4.
double RoundHalfEven(double value);

// The same as a 32-bit whole number. Error 6 "Overflow" for what does not fit (and for no number at all).
std::int32_t RoundToLong(double value);

}  // namespace qvx
