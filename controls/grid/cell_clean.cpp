#include "controls/grid/cell_clean.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "common/number_text.h"
#include "common/numeric_reading.h"
#include "common/text_compare.h"
#include "controls/grid/column_lists.h"

namespace qvx::grid {
namespace {

Text Without(TextView text, char16_t unwanted) {
    Text kept;
    kept.reserve(text.size());
    std::copy_if(text.begin(), text.end(), std::back_inserter(kept), [=](char16_t c) { return c != unwanted; });
    return kept;
}

bool IsMonthAndYearFormat(TextView format) {
    constexpr TextView formats[] = {u"mm/yyyy", u"mm/yy", u"mmm/yyyy", u"mmm/yy"};
    return std::any_of(std::begin(formats), std::end(formats),
                       [&](TextView known) { return EqualNoCase(format, known); });
}

}  // namespace

Text CleanNumber(TextView text) { return DoubleToText(NumericValue(Without(text, u'%'))); }

Text CleanDigits(TextView text) { return Without(CleanNumber(text), u'.'); }

Text NormalizeDate(TextView text, TextView dateFormat, const DateSettings& settings) {
    Text date(text);
    std::ptrdiff_t slashes = 0;
    if (IsDate(date, settings)) {
        std::replace_if(
            date.begin(), date.end(), [](char16_t c) { return c == u'.' || c == u'-' || c == u','; }, u'/');
        slashes = std::count(date.begin(), date.end(), u'/');
    }
    DateSettings reading = settings;
    if (slashes == 1 && IsMonthAndYearFormat(dateFormat)) {
        date.insert(0, u"1/");
        // The day has just been put first, so it must be read in this order: with the month first, 1/3/2024 would be
        // the third of January.
        reading.order = ShortDateOrder::dayMonthYear;
    }
    const std::optional<Date> normal = ParseDate(date, reading);
    return normal ? ShortDateText(*normal, settings) : Text();
}

Text CleanDate(TextView text, TextView dateFormat, const DateSettings& settings) {
    if (!IsDate(text, settings)) return {};
    const std::optional<Date> date = ParseDate(NormalizeDate(text, dateFormat, settings), settings);
    return date ? FormatDate(*date, dateFormat, settings.separator) : Text();
}

int CleaningCode(TextView columnsDataType, TextView caption) {
    for (const int code : {data_type::digits, data_type::numerics, data_type::date})
        if (HasColumnCode(columnsDataType, caption, code)) return code;
    return noCleaning;
}

Text CleanByCode(TextView text, int code, TextView dateFormat, const DateSettings& settings) {
    switch (code) {
        case data_type::digits:
            return CleanDigits(text);
        case data_type::numerics:
            return CleanNumber(text);
        case data_type::date:
            return CleanDate(text, dateFormat, settings);
        default:
            return Text(text);
    }
}

Text CleanCell(TextView text, TextView columnsDataType, TextView caption, TextView dateFormat,
               const DateSettings& settings) {
    return CleanByCode(text, CleaningCode(columnsDataType, caption), dateFormat, settings);
}

}  // namespace qvx::grid
