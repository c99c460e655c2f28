// The user's settings for dates and numbers, and the order of texts.
#pragma once

#include <string>

#include "common/dates.h"

namespace qvx {

// Returns order and separator of a short date pattern ("dd.MM.yyyy"). For a pattern that lacks day, month or year, the
// order is day-month-year; without a separator, it is "/".
DateSettings DateSettingsOf(TextView shortDatePattern, int currentYear);

// The user's signs in numbers, which are shown for "." and "," of a format.
struct NumberSigns {
    Text decimal = u".";
    Text thousands = u",";
};

// Return the user's current settings. Windows only.
NumberSigns SystemNumberSigns();
DateSettings SystemDateSettings();

// Appends the sort key of a text: the bytes of two keys compare as their texts sort in the user's locale. Windows only.
void AppendSystemSortKey(TextView text, std::string& key);

// Whether the small letter of "I" has no dot in the user's locale. Windows only.
bool SystemHasDotlessI();

}  // namespace qvx
