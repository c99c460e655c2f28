// Normalisation of the text of a validated text box.
#pragma once

#include <cstdint>

#include "common/text.h"

namespace qvx::textedit {

// The numbers are those of the type library. Hosts may store any other number: such a box filters and formats nothing.
namespace data_type {
constexpr std::int32_t none = 0;      // free text
constexpr std::int32_t digits = 1;    // whole numbers
constexpr std::int32_t numerics = 2;  // signed decimal numbers
}  // namespace data_type

// Returns the text of a box of that type for `text`: numerics with exactly `decimalPlaces` decimals, rounded half away
// from zero; digits as the shortest decimal form, which may include a fraction, as only typed text is restricted to
// digits. A text that is not a number counts as the number at its start, or as 0. Throws error 5 for a negative number
// of places in a numerics box.
Text NormalisedText(TextView text, std::int32_t dataType, std::int16_t decimalPlaces);

// The same for a box that already contains the text, when its type or places change, when it is loaded, and when the
// focus leaves it. Here, negative places are error 5 for every box with a type, whether it shows decimals or not.
Text NormalisedInPlace(TextView text, std::int32_t dataType, std::int16_t decimalPlaces);

}  // namespace qvx::textedit
