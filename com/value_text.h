// Conversion of values from hosts, records and scripts to text.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include "common/text.h"

namespace qvx {

// Appends the text of a value to `text`: nothing for Null and Empty; numbers with "." as decimal point, whatever the
// user's setting; True and False; dates and times in the system's short form; for an object, its default member's
// value. Returns false, with nothing added, for values without a text: arrays, errors, no object at all. Throws the
// errors that the object raises.
bool AppendValueText(const VARIANT& value, Text& text);

}  // namespace qvx
