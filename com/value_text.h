// Values of hosts, records and scripts as texts.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include "common/text.h"

namespace qvx {

// The text of a value, put behind `text`: nothing for Null and Empty; numbers with "." as decimal point, whatever the
// user's own is; True and False; dates and times in the system's short form; for an object its default member's value.
// False, with nothing added, for what has no such text: arrays, errors, no object at all. Raises what the object does.
bool AppendValueText(const VARIANT& value, Text& text);

}  // namespace qvx
