// The double nearest to a decimal number and the reverse, rounded half to even. Needs neither tables nor memory, and no
// floating-point arithmetic, whose precision in a 32-bit process is the host's choice.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace qvx {

// Limits of NearestDouble, which are far beyond the range of doubles and the digits that can decide a tie.
constexpr std::size_t maxDecimalDigits = 781;
constexpr int maxDecimalMagnitude = 400;

// Returns the double nearest to 0.d1d2d3… times ten to the power of `magnitude`: infinity when it is too large, 0 when
// it is too small. `digits` are values from 0 to 9, at most maxDecimalDigits of them; the first is not 0. `magnitude`
// is between -maxDecimalMagnitude and maxDecimalMagnitude.
double NearestDouble(std::span<const std::uint8_t> digits, int magnitude);

// Returns the double nearest to number * 2^exponent, where `inexact` stands for a remainder below 1 that is not 0. The
// number is below 2^63 and not 0; an inexact one has at least 54 bits.
double RoundToDouble(std::uint64_t number, int exponent, bool inexact);

// Returns the double nearest to a whole number up to 2^53, divided by ten to the power of `decimals`, from 0 to 22.
double NearestDecimalFraction(std::uint64_t number, int decimals);

// Returns a positive, finite value multiplied by ten to the power of `decimals` and rounded half to even. `decimals` is
// such that the result is at least 1 and below 2^62.
std::uint64_t RoundToWhole(double value, int decimals);

}  // namespace qvx
