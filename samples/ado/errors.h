// The run-time errors of the data objects, with the numbers and descriptions that scripts know.
#pragma once

#include "common/run_time_error.h"

namespace qvx::ado {

[[noreturn]] inline void ThrowProviderFailed(const Text& message) { throw RunTimeError(3000, message); }
[[noreturn]] inline void ThrowWrongArguments() {
    throw RunTimeError(3001, u"Arguments are of the wrong type, are out of acceptable range, or are in conflict.");
}
[[noreturn]] inline void ThrowNoCurrentRecord() {
    throw RunTimeError(3021, u"Either BOF or EOF is True: the operation requires a current record.");
}
[[noreturn]] inline void ThrowRecordChanged(const char16_t* why) {
    throw RunTimeError(3197, Text(u"The record cannot be written: ") + why);
}
[[noreturn]] inline void ThrowNotUpdatable(const char16_t* why) {
    throw RunTimeError(3251, Text(u"The record set does not support updating: ") + why);
}
[[noreturn]] inline void ThrowWrongType() {
    throw RunTimeError(3421, u"The value is of the wrong type for the field.");
}
[[noreturn]] inline void ThrowNotAllowedHere(const char16_t* message) { throw RunTimeError(3219, message); }
[[noreturn]] inline void ThrowItemNotFound() {
    throw RunTimeError(3265, u"Item cannot be found in the collection by that name or number.");
}
[[noreturn]] inline void ThrowObjectClosed() {
    throw RunTimeError(3704, u"Operation is not allowed when the object is closed.");
}
[[noreturn]] inline void ThrowObjectOpen() {
    throw RunTimeError(3705, u"Operation is not allowed when the object is open.");
}
[[noreturn]] inline void ThrowInvalidConnection() {
    throw RunTimeError(3709, u"The connection is closed or invalid in this context.");
}

}  // namespace qvx::ado
