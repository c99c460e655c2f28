#include "controls/grid/date_column.h"

namespace qvx::grid {

DateColumn::DateColumn(TextView format, const DateSettings& settings) : settings_(settings) {
    const auto day = format.find_first_of(u"dD");
    const auto month = format.find_first_of(u"mM");
    const auto year = format.find_first_of(u"yY");
    if (month == TextView::npos || year == TextView::npos) return;
    dayless_ = day == TextView::npos;
    if (dayless_ || (day < month && month < year)) {
        settings_.order = ShortDateOrder::dayMonthYear;
    } else if (year < month) {
        settings_.order = ShortDateOrder::yearMonthDay;
    } else {
        settings_.order = ShortDateOrder::monthDayYear;
    }
}

std::optional<Date> DateColumn::Read(TextView text) const {
    constexpr TextView separators = u"/-.,";
    const auto first = text.find_first_of(separators);
    if (!dayless_ || first == TextView::npos || text.find_last_of(separators) != first)
        return ParseDate(text, settings_);
    return ParseDate(u"1" + Text(1, text[first]) + Text(text), settings_);
}

}  // namespace qvx::grid
