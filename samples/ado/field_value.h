// The type of a column, and its values, read from the text that the driver returns.
#pragma once

#include <string>
#include <string_view>

#include "com/variant.h"
#include "common/text.h"
#include "samples/ado/sql/statements.h"

namespace qvx::ado {

enum class Kind { text, longText, integer, bigInteger, real, boolean, date, timestamp, currency, decimal, binary };

// Returns the kind by the declared type of the column if the driver's own type is not precise enough (it calls money
// and exact numbers text), else by the driver's.
Kind KindOf(int driverType, TextView declared);

// Returns the data objects' number for a kind.
long TypeNumber(Kind kind);

// Reads a value of the column's type. A value of another type, which the database allows, stays text.
Variant ReadValue(Kind kind, TextView text);

// Returns a value that a script sets as one of the column's type; raises error 3421 for one that has no such value.
Variant ValueOfKind(Kind kind, const Variant& value);
// Returns a value of a column as statements have it.
SqlValue StatementValue(Kind kind, const Variant& value);

Variant BinaryValue(std::string_view bytes);
Variant NullValue();

}  // namespace qvx::ado
