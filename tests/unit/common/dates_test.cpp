#include "common/dates.h"
#include "tests/support/narrow.h"

#include <gtest/gtest.h>

#include <chrono>
#include <ostream>

namespace qvx {

void PrintTo(const Date& date, std::ostream* out) {
    *out << date.year << '-' << date.month << '-' << date.day << '+' << date.secondOfDay;
}

namespace {

constexpr auto dmy = ShortDateOrder::dayMonthYear;
constexpr auto mdy = ShortDateOrder::monthDayYear;
constexpr auto ymd = ShortDateOrder::yearMonthDay;

DateSettings Settings(ShortDateOrder order) { return {order, 2023, u"/"}; }

using test::Narrow;

constexpr int At(int hour, int minute, int second = 0) { return (hour * 60 + minute) * 60 + second; }

TEST(ParseDate, ReadsWhatPeopleType) {
    const struct {
        TextView text;
        ShortDateOrder order;
        Date date;
    } cases[] = {
        // three numbers, in the system's order first
        {u"3/4/2024", dmy, {2024, 4, 3}},
        {u"3/4/2024", mdy, {2024, 3, 4}},
        {u"3/4/05", ymd, {2003, 4, 5}},
        {u"3.4.2024", dmy, {2024, 4, 3}},
        {u"3 4 2024", dmy, {2024, 4, 3}},
        {u"  3 / 4 - 2024  ", dmy, {2024, 4, 3}},
        // another order where only that reads
        {u"3/25/2024", dmy, {2024, 3, 25}},
        {u"25/3/2024", mdy, {2024, 3, 25}},
        {u"2024-3-25", dmy, {2024, 3, 25}},
        {u"3/25/2024", ymd, {2024, 3, 25}},
        {u"99/12/31", dmy, {1999, 12, 31}},
        // years
        {u"1/1/0", dmy, {2000, 1, 1}},
        {u"1/1/29", dmy, {2029, 1, 1}},
        {u"1/1/30", dmy, {1930, 1, 1}},
        {u"31/12/9999", dmy, {9999, 12, 31}},
        // two numbers
        {u"3-12", dmy, {2023, 12, 3}},
        {u"25-3", mdy, {2023, 3, 25}},
        {u"3-2024", dmy, {2024, 3, 1}},
        {u"2024-3", dmy, {2024, 3, 1}},
        // month names
        {u"5-JAN-24", dmy, {2024, 1, 5}},
        {u"5Mar2024", dmy, {2024, 3, 5}},
        {u"Mar. 5 2024", dmy, {2024, 3, 5}},
        {u"2024 Mar 5", dmy, {2024, 3, 5}},
        {u"99 Mar 5", dmy, {1999, 3, 5}},
        {u"5 Mar 24", ymd, {2005, 3, 24}},
        {u"March 2024 5", dmy, {2024, 3, 5}},
        {u"Mar/2024", dmy, {2024, 3, 1}},
        {u"Mar 5", dmy, {2023, 3, 5}},
        {u"Mar 32", dmy, {1932, 3, 1}},
        // a time behind
        {u"3/4/2024 12:30 AM", dmy, {2024, 4, 3, At(0, 30)}},
        {u"3/4/2024 12:30:15pm", dmy, {2024, 4, 3, At(12, 30, 15)}},
        {u"3/4/2024  9 pm ", dmy, {2024, 4, 3, At(21, 0)}},
        {u"Mar 2024 23:59:59", dmy, {2024, 3, 1, 86399}},
    };
    for (const auto& c : cases) {
        const auto date = ParseDate(c.text, Settings(c.order));
        ASSERT_TRUE(date) << Narrow(c.text);
        EXPECT_EQ(*date, c.date) << Narrow(c.text);
    }
}

TEST(ParseDate, RefusesTheRest) {
    for (const TextView text : {u"",
                                u"word",
                                u"March",
                                u"31/4/2024",
                                u"13/13/2024",
                                u"1/1/10000",
                                u"1/1/-5",
                                u"3//4/2024",
                                u"/3/4/2024",
                                u"3/4/2024/5",
                                u"0-0",
                                u"Mar Apr",
                                u"5 Mars 2024",
                                u"3/4/2024 25:00",
                                u"3/4/2024 10:60",
                                u"3/4/2024 10:30:60",
                                u"3/4/2024 13 PM",
                                u"3/4/2024 :30",
                                u"3/4/2024 10:30:00:00",
                                u"3 10:30",
                                u"3/4/2024-10:30",
                                u"12:30 3/4/2024",
                                u"3\n4\n2024",
                                u"\uFF13/4/2024",
                                u"3;4;2024",
                                u"3/4/2024 5",
                                u"3/4/2024/",
                                u"45000",
                                u"5 6 Mar"}) {
        for (const auto order : {dmy, mdy, ymd}) EXPECT_FALSE(IsDate(text, Settings(order))) << Narrow(text);
    }
}

TEST(ParseDate, TakesTheSystemsOwnSeparator) {
    EXPECT_FALSE(IsDate(u"3'4'2024", Settings(dmy)));
    EXPECT_TRUE(IsDate(u"3'4'2024", {dmy, 2023, u"'"}));
    EXPECT_TRUE(IsDate(u"3. 4. 2024", {dmy, 2023, u". "}));
}

TEST(FormatDate, WritesPatterns) {
    const Date date{2024, 3, 5, At(14, 7, 9)};
    const struct {
        TextView pattern;
        TextView text;
    } cases[] = {
        {u"DD/MM/YYYY", u"05/03/2024"},
        {u"mmm/yyyy", u"Mar/2024"},
        {u"dddd, d mmmm yyyy", u"Tuesday, 5 March 2024"},
        {u"ddddd", u"Tuesday5"},
        {u"y yyy yyyyy", u"y 24y 2024y"},
        {u"hh:mm:ss", u"14:07:09"},
        {u"mm h", u"03 14"},
        {u"hh:mm mm", u"14:07 03"},  // only the first is directly behind the hour
        {u"hh:mmm", u"14:Mar"},
        {u"h:nn AM/PM", u"2:07 PM"},
        {u"h:mm am/pm", u"2:07 pm"},
        {u"hha/p", u"02p"},
        {u"kg \u20AC", u"kg \u20AC"},
    };
    for (const auto& c : cases) EXPECT_EQ(FormatDate(date, c.pattern), c.text) << Narrow(c.pattern);
    EXPECT_EQ(FormatDate({2024, 3, 5}, u"h AM/PM"), u"12 AM");
    EXPECT_EQ(FormatDate({2024, 3, 5, At(12, 0)}, u"h AM/PM"), u"12 PM");
    EXPECT_EQ(FormatDate({100, 1, 1}, u"d/m/yyyy yy"), u"1/1/0100 00");
    EXPECT_EQ(FormatDate(date, u"dd/mm/yyyy", u"."), u"05.03.2024");
}

// What is written in the short form is read again as the same day, in every order; only years below 100 would not be.
TEST(ShortDateText, FollowsTheSystemAndReadsBackThroughTheCalendar) {
    EXPECT_EQ(ShortDateText({2024, 3, 5}, Settings(mdy)), u"03/05/2024");
    EXPECT_EQ(ShortDateText({2024, 3, 5}, {ymd, 2023, u"-"}), u"2024-03-05");
    for (const auto order : {dmy, mdy, ymd}) {
        using namespace std::chrono;
        for (sys_days day = year(100) / 1 / 1; day <= sys_days(year(9999) / 12 / 31); day += days(97)) {
            const year_month_day parts(day);
            const Date date{int{parts.year()}, static_cast<int>(unsigned{parts.month()}),
                            static_cast<int>(unsigned{parts.day()})};
            const Text text = ShortDateText(date, Settings(order));
            const auto read = ParseDate(text, Settings(order));
            ASSERT_TRUE(read) << Narrow(text);
            ASSERT_EQ(*read, date);
        }
    }
}

TEST(Calendar, KnowsMonthsAndWeekdays) {
    EXPECT_EQ(DaysInMonth(2024, 2), 29);
    EXPECT_EQ(DaysInMonth(1900, 2), 28);
    EXPECT_EQ(DaysInMonth(2000, 2), 29);
    EXPECT_EQ(WeekdayOf({1899, 12, 30}), 6);
    EXPECT_FALSE(IsValidDate({99, 12, 31}));
    EXPECT_FALSE(IsValidDate({2024, 1, 1, 86400}));
}

}  // namespace
}  // namespace qvx
