#include "common/dates.h"

#include <chrono>
#include <cmath>
#include <cstdint>

namespace qvx {
namespace {

constexpr int secondsPerDay = 86400;

std::chrono::sys_days ToDays(const Date& date) {
    return std::chrono::year_month_day(std::chrono::year(date.year),
                                       std::chrono::month(static_cast<unsigned>(date.month)),
                                       std::chrono::day(static_cast<unsigned>(date.day)));
}

constexpr std::chrono::sys_days automationZero =
    std::chrono::sys_days(std::chrono::year(1899) / std::chrono::December / std::chrono::day(30));

}  // namespace

int DaysInMonth(int year, int month) {
    const auto last = std::chrono::year_month_day_last(
        std::chrono::year(year), std::chrono::month_day_last(std::chrono::month(static_cast<unsigned>(month))));
    return static_cast<int>(static_cast<unsigned>(last.day()));
}

bool IsValidDate(const Date& date) {
    return date.year >= minYear && date.year <= maxYear && date.month >= 1 && date.month <= 12 && date.day >= 1 &&
           date.day <= DaysInMonth(date.year, date.month) && date.secondOfDay >= 0 && date.secondOfDay < secondsPerDay;
}

int WeekdayOf(const Date& date) { return static_cast<int>(std::chrono::weekday(ToDays(date)).c_encoding()); }

double ToAutomationDate(const Date& date) {
    const auto days = static_cast<double>((ToDays(date) - automationZero).count());
    const double time = static_cast<double>(date.secondOfDay) / secondsPerDay;
    return days < 0 ? days - time : days + time;
}

std::optional<Date> FromAutomationDate(double days) {
    if (!(days > -700000 && days < 3000000)) return std::nullopt;
    const double whole = std::trunc(days);
    auto second = static_cast<std::int64_t>(std::llround(std::fabs(days - whole) * secondsPerDay));
    auto count = static_cast<std::int64_t>(whole);
    if (second == secondsPerDay) {
        second = 0;
        ++count;
    }
    const std::chrono::year_month_day day(automationZero + std::chrono::days(count));
    const Date date{static_cast<int>(day.year()), static_cast<int>(static_cast<unsigned>(day.month())),
                    static_cast<int>(static_cast<unsigned>(day.day())), static_cast<int>(second)};
    if (!IsValidDate(date)) return std::nullopt;
    return date;
}

}  // namespace qvx
