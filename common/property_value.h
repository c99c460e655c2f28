// The value of a persisted property, free of the system's types.
#pragma once

#include <cstdint>
#include <variant>

#include "common/font_spec.h"
#include "common/text.h"

namespace qvx {

// Whole numbers and colours are one kind: hosts keep both as Long. Nothing (monostate) stands for a value that a store
// could not give back.
using PropertyValue = std::variant<std::monostate, bool, std::int32_t, double, Text, FontSpec>;

}  // namespace qvx
