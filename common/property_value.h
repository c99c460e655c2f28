// The value of a persisted property, independent of the system's types.
#pragma once

#include <cstdint>
#include <variant>

#include "common/font_spec.h"
#include "common/text.h"

namespace qvx {

// Whole numbers and colours are one kind, since hosts keep both as Long. No value (monostate) represents a value that a
// store could not return.
using PropertyValue = std::variant<std::monostate, bool, std::int32_t, double, Text, FontSpec>;

}  // namespace qvx
