#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>

#include "common/ascii.h"
#include "common/dates.h"
#include "common/month_names.h"
#include "common/text_compare.h"

namespace qvx {
namespace {

// Returns 1 to 12, or 0 for any other word.
int MonthOfWord(TextView word) {
    for (std::size_t i = 0; i < monthNames.size(); ++i)
        if (EqualNoCase(word, monthNames[i]) || EqualNoCase(word, ShortName(monthNames[i])))
            return static_cast<int>(i) + 1;
    return 0;
}

// One part of a typed date: a number with the count of its digits, or a month's name.
struct Part {
    int value = 0;
    int digits = 0;
    bool isName = false;

    bool CanBeDay() const { return !isName && digits <= 2; }
    bool CanBeMonth() const { return isName || digits <= 2; }
    bool HasYearsLength() const { return !isName && digits > 2; }
    int Year() const {
        if (value >= 100) return value;
        return value < 30 ? 2000 + value : 1900 + value;
    }
};

struct Parts {
    std::array<Part, 3> items;
    std::size_t count = 0;
    int secondOfDay = 0;
};

class Reader {
  public:
    Reader(TextView text, TextView separator) : rest_(text), separator_(separator) {
        separator_ = TrimLeft(separator_);
    }

    std::optional<Parts> Read() {
        Parts parts;
        SkipBlanks();
        while (!rest_.empty()) {
            bool blank = false;
            bool mark = false;
            if (parts.count > 0) {
                blank = SkipBlanks();
                mark = TakeMark();
                if (mark) SkipBlanks();
                if (rest_.empty()) {
                    if (mark) return std::nullopt;
                    break;
                }
            }
            if (parts.count >= 2 && blank && !mark && ReadTime(parts.secondOfDay)) break;
            if (parts.count == parts.items.size() || !ReadPart(parts.items[parts.count])) return std::nullopt;
            ++parts.count;
        }
        return parts;
    }

  private:
    bool SkipBlanks() {
        const std::size_t before = rest_.size();
        rest_ = TrimLeft(rest_);
        return rest_.size() < before;
    }

    bool TakeMark() {
        if (rest_.empty()) return false;
        const char16_t c = rest_.front();
        const bool isMark = TextView(u"/-.,").find(c) != TextView::npos ||
                            (!separator_.empty() && c == separator_.front() && !IsDigit(c) && !IsAsciiLetter(c));
        if (isMark) rest_.remove_prefix(1);
        return isMark;
    }

    // Reads at most four digits. Returns their number, or 0 when there are none or more.
    int TakeNumber(int& value) {
        std::size_t length = 0;
        while (length < rest_.size() && IsDigit(rest_[length])) ++length;
        if (length > 4) return 0;
        value = 0;
        for (std::size_t i = 0; i < length; ++i) value = value * 10 + (rest_[i] - u'0');
        rest_.remove_prefix(length);
        return static_cast<int>(length);
    }

    TextView TakeWord() {
        std::size_t length = 0;
        while (length < rest_.size() && IsAsciiLetter(rest_[length])) ++length;
        const TextView word = rest_.substr(0, length);
        rest_.remove_prefix(length);
        return word;
    }

    bool ReadPart(Part& part) {
        if (IsAsciiLetter(rest_.front())) {
            part.value = MonthOfWord(TakeWord());
            part.isName = true;
            return part.value != 0;
        }
        part.digits = TakeNumber(part.value);
        return part.digits != 0;
    }

    // Reads a time that fills the rest of the text, or nothing.
    bool ReadTime(int& secondOfDay) {
        const TextView before = rest_;
        std::array<int, 3> fields{};
        std::size_t count = 0;
        bool good = true;
        do {
            const int digits = TakeNumber(fields[count]);
            good = digits == 1 || digits == 2;
            ++count;
        } while (good && count < fields.size() && TakeColon());
        SkipBlanks();
        const TextView half = TakeWord();
        const bool afternoon = EqualNoCase(half, u"PM");
        if (!half.empty()) {
            good = good && (afternoon || EqualNoCase(half, u"AM")) && fields[0] <= 12;
            fields[0] = fields[0] % 12 + (afternoon ? 12 : 0);
            SkipBlanks();
        } else {
            good = good && count > 1;
        }
        if (!good || !rest_.empty() || fields[0] > 23 || fields[1] > 59 || fields[2] > 59) {
            rest_ = before;
            return false;
        }
        secondOfDay = (fields[0] * 60 + fields[1]) * 60 + fields[2];
        return true;
    }

    bool TakeColon() {
        if (rest_.empty() || rest_.front() != u':') return false;
        rest_.remove_prefix(1);
        return true;
    }

    TextView rest_;
    TextView separator_;
};

class Interpreter {
  public:
    Interpreter(const Parts& parts, const DateSettings& settings)
        : a_(parts.items[0]), b_(parts.items[1]), c_(parts.items[2]), settings_(settings) {}

    bool Three() {
        if (a_.isName) return Take(a_, b_, c_) || Take(a_, c_, b_);
        const bool yearFirst = settings_.order == ShortDateOrder::yearMonthDay;
        if (b_.isName) return yearFirst ? Take(b_, c_, a_) || Take(b_, a_, c_) : Take(b_, a_, c_) || Take(b_, c_, a_);
        using enum ShortDateOrder;
        switch (settings_.order) {
            case dayMonthYear:
                return InOrder({dayMonthYear, monthDayYear, yearMonthDay});
            case monthDayYear:
                return InOrder({monthDayYear, dayMonthYear, yearMonthDay});
            case yearMonthDay:
                return InOrder({yearMonthDay, monthDayYear, dayMonthYear});
        }
        return false;
    }

    bool Two() {
        if (a_.isName) return TakeThisYear(a_, b_) || TakeFirst(a_, b_);
        if (b_.isName) return TakeThisYear(b_, a_) || (a_.HasYearsLength() && TakeFirst(b_, a_));
        const bool dayFirst = settings_.order == ShortDateOrder::dayMonthYear;
        if (dayFirst ? TakeThisYear(b_, a_) || TakeThisYear(a_, b_) : TakeThisYear(a_, b_) || TakeThisYear(b_, a_))
            return true;
        return TakeFirst(a_, b_) || (a_.HasYearsLength() && TakeFirst(b_, a_));
    }

    const Date& Result() const { return date_; }

  private:
    bool InOrder(std::initializer_list<ShortDateOrder> orders) {
        return std::any_of(orders.begin(), orders.end(), [this](ShortDateOrder order) {
            switch (order) {
                case ShortDateOrder::dayMonthYear:
                    return Take(b_, a_, c_);
                case ShortDateOrder::monthDayYear:
                    return Take(a_, b_, c_);
                case ShortDateOrder::yearMonthDay:
                    return Take(b_, c_, a_);
            }
            return false;
        });
    }

    // A name is always the month, as no day and no year can be a name.
    bool Set(const Part& month, int day, int year) {
        const Date date{year, month.value, day, 0};
        if (!month.CanBeMonth() || !IsValidDate(date)) return false;
        date_ = date;
        return true;
    }

    bool Take(const Part& month, const Part& day, const Part& year) {
        return day.CanBeDay() && !year.isName && Set(month, day.value, year.Year());
    }
    bool TakeThisYear(const Part& month, const Part& day) {
        return day.CanBeDay() && Set(month, day.value, settings_.currentYear);
    }
    bool TakeFirst(const Part& month, const Part& year) { return !year.isName && Set(month, 1, year.Year()); }

    Part a_;
    Part b_;
    Part c_;
    const DateSettings& settings_;
    Date date_;
};

}  // namespace

std::optional<Date> ParseDate(TextView text, const DateSettings& settings) {
    const std::optional<Parts> parts = Reader(text, settings.separator).Read();
    if (!parts || parts->count < 2) return std::nullopt;
    Interpreter interpreter(*parts, settings);
    if (!(parts->count == 3 ? interpreter.Three() : interpreter.Two())) return std::nullopt;
    Date date = interpreter.Result();
    date.secondOfDay = parts->secondOfDay;
    return date;
}

bool IsDate(TextView text, const DateSettings& settings) { return ParseDate(text, settings).has_value(); }

}  // namespace qvx
