#include "common/locale.h"

namespace qvx {

namespace {

bool IsPatternLetter(char16_t c) { return c == u'd' || c == u'M' || c == u'y'; }

// Returns the text between the first two of day, month and year, without surrounding blanks, quotes and era letters.
Text SeparatorOf(TextView pattern) {
    Text separator;
    bool letters = false;
    for (const char16_t c : pattern) {
        if (!IsPatternLetter(c)) {
            if (letters && c != u' ' && c != u'\'' && c != u'g') {
                separator += c;
            }
        } else if (!separator.empty()) {
            break;
        } else {
            letters = true;
        }
    }
    return separator.empty() ? Text(u"/") : separator;
}

}  // namespace

DateSettings DateSettingsOf(TextView shortDatePattern, int currentYear) {
    const auto day = shortDatePattern.find(u'd');
    const auto month = shortDatePattern.find(u'M');
    const auto year = shortDatePattern.find(u'y');
    DateSettings settings;
    settings.currentYear = currentYear;
    settings.separator = SeparatorOf(shortDatePattern);
    if (day == TextView::npos || month == TextView::npos || year == TextView::npos) {
        return settings;
    }
    if (year < month) {
        settings.order = ShortDateOrder::yearMonthDay;
    } else if (month < day) {
        settings.order = ShortDateOrder::monthDayYear;
    }
    return settings;
}

}  // namespace qvx
