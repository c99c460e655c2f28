// What a column holds, and the reading of its values from the text that the driver gives.
#pragma once

#include <string>
#include <string_view>

#include "com/variant.h"
#include "common/text.h"

namespace qvx::ado {

enum class Kind { text, longText, integer, bigInteger, real, boolean, date, timestamp, currency, decimal, binary };

// By the type the column was declared with where the driver's own type says too little (it calls money and exact
// numbers text), else by the driver's.
Kind KindOf(int driverType, TextView declared);

// The data objects' number for it.
long TypeNumber(Kind kind);

// The value as its column's type has it. What is not of that type, which the database allows, stays text.
Variant ReadValue(Kind kind, TextView text);
Variant BinaryValue(std::string_view bytes);
Variant NullValue();

}  // namespace qvx::ado
