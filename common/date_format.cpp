#include <cstddef>
#include <string>
#include <utility>

#include "common/ascii.h"
#include "common/dates.h"
#include "common/month_names.h"
#include "common/text_compare.h"

namespace qvx {
namespace {

Text Number(int value, std::size_t width) {
    std::string digits = std::to_string(value);
    if (digits.size() < width) digits.insert(0, width - digits.size(), '0');
    return Text(digits.begin(), digits.end());
}

class Formatter {
  public:
    Formatter(const Date& date, TextView pattern, TextView separator)
        : date_(date), rest_(pattern), separator_(separator), twelveHours_(HasHalves(pattern)) {}

    Text Format() {
        while (!rest_.empty()) {
            if (!PutHalf() && !PutField()) PutLiteral();
        }
        return std::move(text_);
    }

  private:
    static bool HasHalves(TextView pattern) {
        return ContainsNoCase(pattern, u"AM/PM") || ContainsNoCase(pattern, u"A/P");
    }

    int Hour() const {
        const int hour = date_.secondOfDay / 3600;
        return twelveHours_ ? (hour + 11) % 12 + 1 : hour;
    }
    int Minute() const { return date_.secondOfDay / 60 % 60; }

    // Writes AM/PM or A/P, each half in the case that its letters have in the pattern.
    bool PutHalf() {
        for (const TextView mark : {TextView(u"AM/PM"), TextView(u"A/P")}) {
            if (!StartsWithNoCase(rest_, mark)) continue;
            const std::size_t slash = mark.find(u'/');
            const bool afternoon = date_.secondOfDay >= 12 * 3600;
            text_ += afternoon ? rest_.substr(slash + 1, slash) : rest_.substr(0, slash);
            rest_.remove_prefix(mark.size());
            afterHour_ = false;
            return true;
        }
        return false;
    }

    // Writes the longest field at the front, if there is one.
    bool PutField() {
        const char16_t letter = LowerAscii(rest_.front());
        std::size_t run = 1;
        while (run < rest_.size() && LowerAscii(rest_[run]) == letter) ++run;
        const std::size_t taken = TakeField(letter, run);
        rest_.remove_prefix(taken);
        if (taken > 0) afterHour_ = letter == u'h';
        return taken > 0;
    }

    // Writes the field that the run's letters begin. Returns how many of them it used, 0 for none.
    std::size_t TakeField(char16_t letter, std::size_t run) {
        const std::size_t upToTwo = run < 2 ? run : 2;
        const std::size_t upToFour = run < 4 ? run : 4;
        switch (letter) {
            case u'd':
                if (upToFour <= 2) {
                    text_ += Number(date_.day, upToFour);
                } else {
                    PutName(weekdayNames[static_cast<std::size_t>(WeekdayOf(date_))], upToFour);
                }
                return upToFour;
            case u'm':
                if (upToFour <= 2) {
                    text_ += Number(afterHour_ ? Minute() : date_.month, upToFour);
                } else {
                    PutName(monthNames[static_cast<std::size_t>(date_.month) - 1], upToFour);
                }
                return upToFour;
            case u'y':
                if (run < 2) return 0;
                if (run < 4) {
                    text_ += Number(date_.year % 100, 2);
                    return 2;
                }
                text_ += Number(date_.year, 4);
                return 4;
            case u'h':
                text_ += Number(Hour(), upToTwo);
                return upToTwo;
            case u'n':
                text_ += Number(Minute(), upToTwo);
                return upToTwo;
            case u's':
                text_ += Number(date_.secondOfDay % 60, upToTwo);
                return upToTwo;
            default:
                return 0;
        }
    }

    void PutName(TextView name, std::size_t letters) { text_ += letters == 3 ? ShortName(name) : name; }

    void PutLiteral() {
        const char16_t c = rest_.front();
        if (c == u'/') {
            text_ += separator_;
        } else {
            text_ += c;
        }
        if (IsAsciiLetter(c)) afterHour_ = false;
        rest_.remove_prefix(1);
    }

    const Date& date_;
    TextView rest_;
    TextView separator_;
    bool twelveHours_;
    bool afterHour_ = false;  // the last field was the hour, followed by nothing but punctuation
    Text text_;
};

}  // namespace

Text FormatDate(const Date& date, TextView pattern, TextView separator) {
    return Formatter(date, pattern, separator).Format();
}

Text ShortDateText(const Date& date, const DateSettings& settings) {
    switch (settings.order) {
        case ShortDateOrder::dayMonthYear:
            return FormatDate(date, u"dd/mm/yyyy", settings.separator);
        case ShortDateOrder::monthDayYear:
            return FormatDate(date, u"mm/dd/yyyy", settings.separator);
        case ShortDateOrder::yearMonthDay:
            break;
    }
    return FormatDate(date, u"yyyy/mm/dd", settings.separator);
}

}  // namespace qvx
