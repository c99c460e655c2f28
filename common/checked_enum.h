// Conversion of numbers from outside to enumerations.
#pragma once

#include "common/run_time_error.h"

namespace qvx {

// Returns the enumeration's value with this number. Throws error 380 "Invalid property value" if there is none. The
// enumeration must count from 0 to its `last`.
template <class Enum>
Enum CheckedEnum(int number) {
    if (number < 0 || number > static_cast<int>(Enum::last)) {
        throw RunTimeError(errors::invalidPropertyValue, u"Invalid property value");
    }
    return static_cast<Enum>(number);
}

}  // namespace qvx
