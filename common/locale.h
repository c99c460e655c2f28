// The system's settings for dates.
#pragma once

#include "common/dates.h"

namespace qvx {

// Returns order and separator of a short date pattern ("dd.MM.yyyy"). For a pattern that lacks day, month or year, the
// order is day-month-year; without a separator, it is "/".
DateSettings DateSettingsOf(TextView shortDatePattern, int currentYear);

// Returns the user's current settings. Windows only.
DateSettings SystemDateSettings();

}  // namespace qvx
