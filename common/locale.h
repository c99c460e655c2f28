// The system's way of writing dates.
#pragma once

#include "common/dates.h"

namespace qvx {

// Order and separator of a short date pattern ("dd.MM.yyyy"). A pattern that lacks one of the three has the order
// day-month-year; one without a separator gets "/".
DateSettings DateSettingsOf(TextView shortDatePattern, int currentYear);

// Of the user's settings at this moment. Windows only.
DateSettings SystemDateSettings();

}  // namespace qvx
