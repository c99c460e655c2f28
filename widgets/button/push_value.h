// The `Value` of a push button, which is a trigger: programs set it to click the button, designers only read it.
#pragma once

#include "common/run_time_error.h"

namespace qvx::buttons {

// Throws run-time error 387 in a designer.
inline void RequireValueSettable(bool userMode) {
    if (!userMode) {
        throw RunTimeError(errors::setNotPermitted, u"Set not permitted");
    }
}

// Throws run-time error 393 outside a designer.
inline void RequireValueReadable(bool userMode) {
    if (userMode) {
        throw RunTimeError(errors::getNotSupportedAtRunTime, u"Get not supported at run time");
    }
}

}  // namespace qvx::buttons
