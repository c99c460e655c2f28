// Civil dates from 1 January 100 to 31 December 9999: reading, writing, and the automation date number.
#pragma once

#include <optional>

#include "common/text.h"

namespace qvx {

enum class ShortDateOrder { dayMonthYear, monthDayYear, yearMonthDay };

// The settings that reading and writing dates depend on; the caller gets them from the system.
struct DateSettings {
    ShortDateOrder order = ShortDateOrder::dayMonthYear;
    int currentYear = 2000;  // used for a day and month without a year
    Text separator = u"/";   // between the numbers of a short date, and for "/" in a pattern
};

// A day of the Gregorian calendar and a time of day in seconds (0 to 86399).
struct Date {
    int year = 1899;
    int month = 12;
    int day = 30;
    int secondOfDay = 0;
    friend bool operator==(const Date&, const Date&) = default;
};

constexpr int minYear = 100;
constexpr int maxYear = 9999;

// Returns 28 to 31; the month is 1 to 12.
int DaysInMonth(int year, int month);

// Whether the year is minYear to maxYear, the day exists in the calendar, and the time is in its range.
bool IsValidDate(const Date& date);

// Returns 0 for Sunday to 6 for Saturday.
int WeekdayOf(const Date& date);

// Reads a date as people type it; nullopt if the text is no date. Day, month and year are in the settings' order,
// otherwise in month-day-year, day-month-year or year-month-day where only that order reads as a date; the month may be
// an English name or its first three letters. The separator is one of "/", "-", ".", "," or the settings' separator,
// optionally with blanks around it, or blanks alone. Years 0 to 29 are 2000 to 2029, 30 to 99 are 1930 to 1999. Day and
// month alone are in the current year; month and year alone are the first of the month. A time may follow after a
// blank: h, h:m or h:m:s, optionally followed by AM or PM (which h alone requires).
std::optional<Date> ParseDate(TextView text, const DateSettings& settings);

bool IsDate(TextView text, const DateSettings& settings);

// Writes a valid date by a pattern, ignoring the pattern's case: d dd ddd dddd (day, weekday's name), m mm mmm mmmm
// (month, its name), yy yyyy, h hh n nn s ss, AM/PM and A/P (which make h count to 12 and are written in the pattern's
// case). m and mm after an hour are minutes. "/" becomes the given separator; every other character is written as it
// is.
Text FormatDate(const Date& date, TextView pattern, TextView separator = u"/");

// Writes the date in the settings' order and with their separator: two digits for day and month, four for the year.
Text ShortDateText(const Date& date, const DateSettings& settings);

}  // namespace qvx
