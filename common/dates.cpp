#include "common/dates.h"

#include <chrono>

namespace qvx {
namespace {

constexpr int secondsPerDay = 86400;

std::chrono::sys_days ToDays(const Date& date) {
    return std::chrono::year_month_day(std::chrono::year(date.year),
                                       std::chrono::month(static_cast<unsigned>(date.month)),
                                       std::chrono::day(static_cast<unsigned>(date.day)));
}

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

}  // namespace qvx
