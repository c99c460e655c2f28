// The form into which a validated text box brings its text.
#pragma once

#include <cstdint>

#include "common/text.h"

namespace qvx::textedit {

// Numbered as in the type library. Hosts may store any other number: such a box filters and formats nothing.
namespace data_type {
constexpr std::int32_t none = 0;      // free text
constexpr std::int32_t digits = 1;    // whole numbers
constexpr std::int32_t numerics = 2;  // signed decimal numbers
}  // namespace data_type

// The text that a box of that type holds for `text`: numerics with exactly `decimalPlaces` decimals, rounded half away
// from zero; digits as the shortest decimal form, a fraction included, as only typing is kept from one. What is no
// number counts as what it starts with, or as 0. Error 5 for a negative number of places in a numerics box.
Text NormalisedText(TextView text, std::int32_t dataType, std::int16_t decimalPlaces);

// The same for a box that already holds the text, when its type or places change, when it is loaded and when it is
// left. Hosts know error 5 for negative places from every box with a type here, whether it shows decimals or not.
Text NormalisedInPlace(TextView text, std::int32_t dataType, std::int16_t decimalPlaces);

}  // namespace qvx::textedit
