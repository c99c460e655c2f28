// Dates: every text that reads as a date gives a date of the calendar that survives being written and read again, and
// any pattern can be written. The input: order, current year, pattern's length, pattern, text.
#include "common/dates.h"
#include "fuzz/fuzz_input.h"

namespace qvx {
namespace {

Date DayOf(Date date) {
    date.secondOfDay = 0;
    return date;
}

}  // namespace

void CheckInput(FuzzInput& input) {
    DateSettings settings;
    settings.order = static_cast<ShortDateOrder>(input.Byte() % 3);
    settings.currentYear = minYear + static_cast<int>(input.Below(maxYear - minYear + 1));
    const Text pattern = input.Latin(input.Byte() % 32);
    const Text text = input.RestLatin();
    const auto date = ParseDate(text, settings);
    Require(date.has_value() == IsDate(text, settings), "the test and the reading agree");
    if (!date) return;
    Require(IsValidDate(*date), "the date is in the calendar");
    Require(FormatDate(*date, pattern).size() <= pattern.size() * 10, "a pattern's letter writes a word at most");
    for (const TextView separator : {u"/", u"-", u".", u" "}) {
        settings.separator = separator;
        Require(ParseDate(ShortDateText(*date, settings), settings) == DayOf(*date), "the short form reads back");
    }
    for (const TextView form : {u"d mmmm yyyy hh:nn:ss", u"mmm d, yyyy h:mm:ss AM/PM", u"yyyy-mm-dd hh:mm:ss"})
        Require(ParseDate(FormatDate(*date, form), settings) == *date, "long forms read back");
}

}  // namespace qvx
