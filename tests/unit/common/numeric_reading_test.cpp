#include "common/numeric_reading.h"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

#include "common/nearest_double.h"
#include "tests/support/error_of.h"
#include "tests/support/narrow.h"

namespace qvx {
namespace {

struct Case {
    TextView text;
    double value;
};

using test::Narrow;

TEST(Val, ReadsWhatStandsAtTheStart) {
    const Case cases[] = {
        {u"", 0},
        {u"+7", 7},
        {u"1,250", 1},
        {u".5", 0.5},
        {u"5.", 5},
        {u".", 0},
        {u"-", 0},
        {u"+-1", 0},
        {u"1.2.3", 1.2},
        {u"  \t\n 42", 42},
        {u"1 2\t3\n4", 1234},
        {u"- 5", -5},
        {u"\r5", 0},      // a carriage return is no blank
        {u"\u00A05", 0},  // nor is a no-break space
        {u"\uFF15", 0},   // nor a full-width digit a digit
        {u"1e3", 1000},
        {u"1d-2", 0.01},
        {u"1E+2x", 100},
        {u"1E + 2", 100},
        {u"1E+", 1},
        {u"E5", 0},
        {u"1E2.5", 100},
        {u"0E99999999999999999999", 0},
        {u"9007199254740993.00000000000000000000000001", 9007199254740994.0},
        {u"00000000000000000000000000000012.50", 12.5},
    };
    for (const Case& c : cases) EXPECT_EQ(Val(c.text), c.value) << Narrow(c.text);
}

TEST(Val, ReadsHexadecimalAndOctal) {
    const Case cases[] = {
        {u"&H10", 16},        {u"&hff", 255},
        {u" & H 1 0", 16},    {u"&H7FFF", 32767},
        {u"&H8000", -32768},  {u"&H0000FFFF", -1},
        {u"&HFFFF&", 65535},  {u"&HFFFF &", -1},
        {u"&H10000", 65536},  {u"&H80000000", -2147483648.0},
        {u"&HFFFFFFFF&", -1}, {u"&H1G", 1},
        {u"&H", 0},           {u"&", 0},
        {u"&o17", 15},        {u"&17", 15},
        {u"&8", 0},           {u"&O78", 7},
        {u"&O177777", -1},    {u"&O177777&", 65535},
        {u"&O200000", 65536}, {u"&H1.5", 1},
        {u"&HFFFF%", -1},     {u"-&H10", 0},  // a sign belongs to decimal numbers only
    };
    for (const Case& c : cases) EXPECT_EQ(Val(c.text), c.value) << Narrow(c.text);
}

TEST(Val, ReadsTypeCharacters) {
    const Case cases[] = {
        {u"50%", 50},          {u"32767%", 32767}, {u"-32768%", -32768},
        {u"00032767%", 32767}, {u"50&", 50},       {u"2147483647&", 2147483647},
        {u"50.5!", 50.5},      {u"50.5#", 50.5},   {u"50.5@", 50.5},
        {u"1E5#", 1e5},        {u"%5", 0},         {u"50 %", 50},
        {u"50.5 %", 50.5},  // not directly behind the number
        {u"40000 %", 40000},   {u"50$", 50},
    };
    for (const Case& c : cases) EXPECT_EQ(Val(c.text), c.value) << Narrow(c.text);
}

TEST(Val, RaisesOverflowAndTypeMismatch) {
    const struct {
        TextView text;
        int error;
    } cases[] = {
        {u"1E309", errors::overflow},         {u"1E99999999999999999999999", errors::overflow},
        {u"32768%", errors::overflow},        {u"-32769%", errors::overflow},
        {u"2147483648&", errors::overflow},   {u"&H100000000", errors::overflow},
        {u"&O40000000000", errors::overflow}, {u"&H10000%", errors::overflow},
        {u"50.5%", errors::typeMismatch},     {u"1E2%", errors::typeMismatch},
        {u"1D2&", errors::typeMismatch},
    };
    for (const auto& c : cases) {
        const test::Raised raised = test::RaisedBy([&] { Val(c.text); });
        EXPECT_EQ(raised.number, c.error) << Narrow(c.text);
        EXPECT_EQ(raised.words, c.error == errors::overflow ? u"Overflow" : u"Type mismatch");
    }
}

TEST(ReadNumeric, TakesTheWholeText) {
    const std::u16string nines(309, u'9');
    const Case numbers[] = {
        {u"  12\t", 12},     {u"-5", -5},       {u"5-", -5},      {u"5+", 5},     {u"1,234", 1234},
        {u"1,2,3.5", 123.5}, {u"12,,3", 123},   {u"12,", 12},     {u".5", 0.5},   {u"5.", 5},
        {u"1E3", 1000},      {u"1.5e-1", 0.15}, {u"1E3-", -1000}, {u"1E-400", 0}, {u"-1,000.25", -1000.25},
    };
    for (const Case& c : numbers) {
        EXPECT_TRUE(IsNumeric(c.text)) << Narrow(c.text);
        EXPECT_EQ(ReadNumeric(c.text).value_or(-99), c.value) << Narrow(c.text);
    }
    const TextView others[] = {u"",      u" ",   u".",     u"-",      u"+",    u"abc", u"12a",  u"1 2",
                               u"1.2.3", u"-5-", u"5--",   u",5",     u"1.5,", u"1E",  u"1E+",  u"E5",
                               u"--5",   u"5 -", u"$5",    u"(5)",    u"&H10", u"50%", u"1e5e", u"\n5",
                               u"1E400", nines,  u"1.2,3", u"\uFF15", u"1d5",  u"1D-2"};
    for (const TextView text : others) EXPECT_FALSE(IsNumeric(text)) << Narrow(text);
}

TEST(NumericValue, FallsBackWhereValFails) {
    const std::u16string nines(400, u'9');
    const Case cases[] = {
        {u"", 0},        {u"12 kg", 12},   {u"abc", 0},        {u"-3.5", -3.5},     {u"1,250", 1},
        {u"45%", 45},    {u"50.5%", 50.5}, {u"-50.5%", -50.5}, {u"40000%", 40000},  {u"50.%", 50},
        {u" 50.5%", 0},  // the run starts at the first character, and a blank is not of it
        {u"1 0.5%", 1},  {u"1E5%", 1},     {u"1E400", 1},      {u"-2.5E999", -2.5}, {u"&H100000000", 0},
        {u"&H10", 16},   {nines, 0},  // no double holds it: it is not numeric
        {u"\uFEFF5", 0},
    };
    for (const Case& c : cases) EXPECT_EQ(NumericValue(c.text), c.value) << Narrow(c.text);
    for (const TextView text : {u"-", u"-abc", u"--2", u"-."})
        EXPECT_FALSE(std::signbit(NumericValue(text))) << Narrow(text);
}

// The quick reading, the full one and the standard library agree bit for bit, over both widths of character.
TEST(NumericValue, ReadsPlainDecimalsExactly) {
    std::mt19937_64 random(20241105);
    for (int i = 0; i < 200000; ++i) {
        std::string text = random() % 2 ? "-" : "";
        const auto whole = random() % 21;
        const auto decimals = random() % 22;
        for (std::uint64_t d = 0; d < whole; ++d) text += static_cast<char>('0' + random() % 10);
        text += '.';
        for (std::uint64_t d = 0; d < decimals; ++d) text += static_cast<char>('0' + random() % 10);
        if (whole + decimals == 0) text += '0';
        double expected = 0;
        std::from_chars(text.data(), text.data() + text.size(), expected);
        ASSERT_EQ(NumericValue(text), expected) << text;
        ASSERT_EQ(NumericValue(Text(text.begin(), text.end())), expected) << text;
        text.insert(0, " ");  // a blank goes the long way
        ASSERT_EQ(NumericValue(text), expected) << text;
    }
}

// The whole range of doubles with exponents, the ties between two of them, and what is next to a tie.
TEST(NumericValue, ReadsExponentsExactly) {
    std::mt19937_64 random(20261126);
    const auto check = [](const std::string& text) {
        const double expected = std::strtod(text.c_str(), nullptr);
        if (std::isinf(expected)) {
            EXPECT_FALSE(IsNumeric(Text(text.begin(), text.end()))) << text;
        } else {
            EXPECT_EQ(NumericValue(text), expected) << text;
        }
    };
    char text[1200];
    for (int i = 0; i < 5000; ++i) {
        double value = std::fabs(std::bit_cast<double>(random()));
        if (i % 4 == 0) value = std::fmod(value, 1e-300) * 1e-20;  // without a leading bit of 1
        if (!std::isfinite(value)) continue;
        std::snprintf(text, sizeof text, "%.*e", static_cast<int>(random() % 40), value);
        check(text);
        // The middle of two doubles is exact with wider numbers, and all its digits count.
        const auto middle =
            (static_cast<long double>(value) + static_cast<long double>(std::nextafter(value, HUGE_VAL))) / 2;
        std::snprintf(text, sizeof text, "%.800Le", middle);
        check(text);
        std::string above = text;
        above.insert(above.find('e'), std::string(random() % 50, '0') + "1");
        check(above);
    }
    for (const char* limit : {"2.2250738585072011e-308", "4.9406564584124654e-324", "2.4703282292062327e-324",
                              "2.4703282292062328e-324", "1.7976931348623158e308", "1.7976931348623159e308", "1e-400"})
        check(limit);
}

// What takes the place of a quotient in a 32-bit process.
TEST(NearestDecimalFraction, RoundsAsTheQuotientOfTwoDoubles) {
    std::mt19937_64 random(20261127);
    for (int i = 0; i < 50000; ++i) {
        const std::uint64_t number = random() >> (11 + random() % 53);
        double power = 1;
        for (int decimals = 0; decimals <= 22; ++decimals, power *= 10)
            ASSERT_EQ(NearestDecimalFraction(number, decimals), static_cast<double>(number) / power)
                << number << " / " << power;
    }
}

}  // namespace
}  // namespace qvx
