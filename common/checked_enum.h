// Numbers from outside as enumerations.
#pragma once

#include "common/run_time_error.h"

namespace qvx {

// The enumeration's value with this number; 380 "Invalid property value" when it has none. The enumeration counts from
// 0 to its `last`.
template <class Enum>
Enum CheckedEnum(int number) {
    if (number < 0 || number > static_cast<int>(Enum::last)) {
        throw RunTimeError(errors::invalidPropertyValue, u"Invalid property value");
    }
    return static_cast<Enum>(number);
}

}  // namespace qvx
