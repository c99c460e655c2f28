#include "controls/grid/cell_clean.h"

#include <gtest/gtest.h>

#include "controls/grid/list_match.h"
#include "tests/unit/grid/grid_fixture.h"

namespace qvx::grid {
namespace {

const DateSettings dayFirst{ShortDateOrder::dayMonthYear, 2024, u"/"};
const DateSettings monthFirst{ShortDateOrder::monthDayYear, 2024, u"/"};
const DateSettings yearFirst{ShortDateOrder::yearMonthDay, 2024, u"-"};

struct CleanCase {
    TextView typed;
    TextView cell;
};

TEST(CleanDigits, JoinsTheDigitsAroundThePoint) {
    const CleanCase cases[] = {
        {u"45%", u"45"},
        {u"3.75", u"375"},
        {u"-7", u"-7"},
        {u"", u"0"},
        {u"abc", u"0"},
        {u"4%5%", u"45"},
        {u"12abc", u"12"},
        {u"1,234", u"1"},
        {u"007", u"7"},
        {u" 8 9 ", u"89"},
        {u"0.50", u"05"},
        {u"-1.5", u"-15"},
        {u"10.00", u"10"},
        {u"1e3", u"1000"},
        {u"123456789012345", u"123456789012345"},
        // A number too large for digits alone keeps its exponent, only the point goes.
        {u"1234567890123456", u"123456789012346E+15"},
        {u"1.5E20", u"15E+20"},
    };
    for (const CleanCase& c : cases) EXPECT_EQ(Narrow(CleanDigits(c.typed)), Narrow(c.cell)) << Narrow(c.typed);
}

TEST(CleanNumber, KeepsThePoint) {
    const CleanCase cases[] = {
        {u"12abc", u"12"}, {u"1,234", u"1"}, {u"", u"0"},      {u"50.5%", u"50.5"}, {u"-3.50", u"-3.5"},
        {u".5", u"0.5"},   {u"-0", u"0"},    {u"&H10", u"16"}, {u"1E999", u"1"},    {u"2%%5", u"25"},
    };
    for (const CleanCase& c : cases) EXPECT_EQ(Narrow(CleanNumber(c.typed)), Narrow(c.cell)) << Narrow(c.typed);
}

struct DateCase {
    TextView typed;
    TextView format;
    const DateSettings* settings;
    TextView cell;
};

TEST(CleanDate, FormatsWhatIsADateAndEmptiesTheRest) {
    const DateCase cases[] = {
        {u"3-2024", u"mmm/yyyy", &dayFirst, u"Mar/2024"},
        {u"3-2024", u"mmm/yyyy", &yearFirst, u"Mar-2024"},
        {u"3.2024", u"MM/YYYY", &monthFirst, u"03/2024"},
        {u"12/2024", u"mm/yy", &dayFirst, u"12/24"},
        {u"mar-2024", u"MMM/yy", &monthFirst, u"Mar/24"},
        // Three parts are a whole date under any format.
        {u"5-3-2024", u"mmm/yyyy", &dayFirst, u"Mar/2024"},
        {u"5-3-2024", u"mmm/yyyy", &monthFirst, u"May/2024"},
        {u"5.3.24", u"DD/MM/YYYY", &dayFirst, u"05/03/2024"},
        {u"5/3/2024", u"DD/MM/YYYY", &monthFirst, u"03/05/2024"},
        // Two parts are month and year only under the four formats of those.
        {u"5/3", u"DD/MM/YYYY", &dayFirst, u"05/03/2024"},
        {u"3-2024", u"DD/MM/YYYY", &dayFirst, u"01/03/2024"},
        {u"31/2/2024", u"DD/MM/YYYY", &dayFirst, u""},
        {u"29-2-2024", u"DD/MM/YYYY", &dayFirst, u"29/02/2024"},
        {u"29-2-2023", u"DD/MM/YYYY", &dayFirst, u""},
        {u"tomorrow", u"mmm/yyyy", &dayFirst, u""},
        {u"", u"DD/MM/YYYY", &dayFirst, u""},
        {u"45", u"mmm/yyyy", &dayFirst, u""},
        {u"13-2024", u"mmm/yyyy", &dayFirst, u""},
    };
    for (const DateCase& c : cases) {
        SCOPED_TRACE(Narrow(c.typed) + " as " + Narrow(c.format));
        EXPECT_EQ(Narrow(CleanDate(c.typed, c.format, *c.settings)), Narrow(c.cell));
        // A committed month is taken unchanged the next time.
        if (c.format.find(u'D') == TextView::npos && !c.cell.empty()) {
            EXPECT_EQ(Narrow(CleanDate(c.cell, c.format, *c.settings)), Narrow(c.cell));
        }
    }
}

TEST(NormalizeDate, GivesTheShortFormOfTheSystem) {
    EXPECT_EQ(Narrow(NormalizeDate(u"3-2024", u"mm/yyyy", dayFirst)), "01/03/2024");
    EXPECT_EQ(Narrow(NormalizeDate(u"3-2024", u"mm/yyyy", monthFirst)), "03/01/2024");
    EXPECT_EQ(Narrow(NormalizeDate(u"5.3.2024", u"d/m/yy", dayFirst)), "05/03/2024");
    EXPECT_EQ(Narrow(NormalizeDate(u"x/y", u"mm/yyyy", dayFirst)), "");
}

TEST(CleanCell, FirstOfTheCodesZeroOneTwoWins) {
    struct Case {
        TextView types;
        TextView typed;
        TextView cell;
    };
    const Case cases[] = {
        {u";A-0;", u"3.75", u"375"},     {u";A-1;", u"3.75", u"3.75"},     {u";A-2;", u"3.75", u"01/03/1975"},
        {u";A-1;A-0;", u"3.75", u"375"}, {u";A-2;A-1;", u"3.75", u"3.75"}, {u";B-0;", u"3.75%", u"3.75%"},
        {u"", u"  any  ", u"  any  "},   {u";a-1;", u"7x", u"7"},          {u";A-3;", u"7x", u"7x"},
        {u"A-0;", u"7x", u"7x"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Narrow(CleanCell(c.typed, c.types, u"A", u"DD/MM/YYYY", dayFirst)), Narrow(c.cell))
            << Narrow(c.types);
}

TEST(ListMatch, SelectionThenPrefixThenTopOrOldText) {
    const std::vector<Text> five = {u"Apple", u"Banana", u"Cherry", u"Bacon", u"Date"};
    std::vector<Text> twenty;
    for (int i = 0; i < 20; ++i) twenty.push_back(Text(1, static_cast<char16_t>(u'a' + i)));
    struct Case {
        const char* why;
        const std::vector<Text>* entries;
        int listIndex;
        int topIndex;
        TextView typed;
        TextView old;
        TextView cell;
    };
    const std::vector<Text> none;
    const std::vector<Text> eight(twenty.begin(), twenty.begin() + 8);
    const std::vector<Text> nine(twenty.begin(), twenty.begin() + 9);
    const Case cases[] = {
        {"selected entry", &five, 3, 0, u"ap", u"old", u"Bacon"},
        {"first that begins so", &five, -1, 0, u"ba", u"", u"Banana"},
        {"from the top entry on", &five, -1, 2, u"BA", u"", u"Bacon"},
        {"longer than any entry", &five, -1, 0, u"dates", u"", u"Apple"},
        {"no match keeps the old text", &five, -1, 0, u"x", u"Cherry", u"Cherry"},
        {"no match, no old text: the top", &five, -1, 2, u"x", u"", u"Cherry"},
        {"match above the top is not seen", &five, -1, 4, u"apple", u"old", u"old"},
        {"nothing typed matches the top", &five, -1, 1, u"", u"Cherry", u"Banana"},
        {"twenty entries: the top unseen", &twenty, -1, 5, u"a", u"old", u"f"},
        {"twenty entries, nine left: the top", &twenty, -1, 11, u"o", u"old", u"l"},
        {"eight entries: looked at", &eight, -1, 0, u"h", u"", u"h"},
        {"nine entries: the top", &nine, -1, 0, u"h", u"", u"a"},
        {"empty list, empty cell", &none, -1, 0, u"x", u"", u""},
        {"empty list keeps the old text", &none, -1, 0, u"x", u"old", u"old"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Narrow(MatchListEntry(ListOf(*c.entries, c.listIndex, c.topIndex), c.typed, c.old)), Narrow(c.cell))
            << c.why;
}

}  // namespace
}  // namespace qvx::grid
