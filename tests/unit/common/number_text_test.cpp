#include "common/number_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <string>

#include "common/numeric_reading.h"
#include "tests/support/error_of.h"

namespace qvx {
namespace {

std::string Got(double value) {
    const Text text = DoubleToText(value);
    NumberBuffer buffer;
    EXPECT_EQ(DoubleToText(value, buffer), text);
    return std::string(text.begin(), text.end());
}

// The C library's 15 digits.
std::string FifteenDigits(double value) {
    char expected[40];
    std::snprintf(expected, sizeof expected, "%.15g", value);
    std::string text;
    for (const char* c = value == 0 ? "0" : expected; *c; ++c) text += *c == 'e' ? 'E' : *c;
    return text;
}

// Against the C library's: products as they come from cells, their neighbours among the doubles, and the ends of the
// range without an exponent.
TEST(DoubleToText, IsTheFifteenDigitForm) {
    std::mt19937_64 random(15);
    for (int round = 0; round < 20000; ++round) {
        double value = static_cast<double>(static_cast<int>(random() % 2000000) - 1000000) / 100;
        value *= std::pow(10.0, static_cast<int>(random() % 20) - 8);
        if (round % 2 == 0) value *= static_cast<double>(random() % 1000) / 8;
        if (round % 5 == 0) {  // nearly a half of the fifteenth digit, at times behind nines
            std::string half = round % 2 == 0 ? "-" : "";
            half += std::to_string(round % 3 == 0
                                       ? 999'999'999'999'999 - (1LL << random() % 40)
                                       : static_cast<long long>(random() % 900'000'000'000'000) + 100'000'000'000'000);
            value = std::stod(half + "5e-" + std::to_string(1 + random() % 20));
        }
        if (round % 3 == 0) value = std::nextafter(value, round % 2 == 0 ? 1e300 : -1e300);
        EXPECT_EQ(Got(value), FifteenDigits(value));
    }
}

// Numbers of few decimals have a way of their own, which must not be taken a step too far: all sizes, all counts of
// decimals, and the doubles around each.
TEST(DoubleToText, NumbersOfFewDecimalsAndTheirNeighbours) {
    std::mt19937_64 random(6);
    for (int round = 0; round < 5000; ++round) {
        const auto digits = static_cast<int>(1 + random() % 16);
        const auto whole = static_cast<long long>(random() % static_cast<std::uint64_t>(std::pow(10.0, digits)));
        const double middle =
            std::stod((round % 2 == 0 ? "-" : "") + std::to_string(whole) + "e-" + std::to_string(random() % 9));
        double below = middle;
        double above = middle;
        for (int step = 0; step < 6; ++step) {
            EXPECT_EQ(Got(below), FifteenDigits(below));
            EXPECT_EQ(Got(above), FifteenDigits(above));
            below = std::nextafter(below, -1e300);
            above = std::nextafter(above, 1e300);
        }
    }
    for (int round = 0; round < 20000; ++round) {  // any double at all
        const std::uint64_t bits = random();
        double value = 0;
        std::memcpy(&value, &bits, sizeof value);
        if (!std::isfinite(value)) continue;
        EXPECT_EQ(Got(value), FifteenDigits(value));
    }
}

// Where the ways part, and what the C library writes in another way.
TEST(DoubleToText, WritesFifteenSignificantDigits) {
    const struct {
        double value;
        TextView text;
    } cases[] = {
        {-0.0, u"0"},
        {0.9999999999999999, u"1"},
        {123456789012345.02, u"123456789012345"},
        {999999999999999.4, u"999999999999999"},
        {999999999999999.6, u"1E+15"},
        {1e15, u"1E+15"},
        {0.0001, u"0.0001"},
        {0.00001, u"1E-05"},
        {0.0000999999999999999999, u"0.0001"},
        {0.1 + 0.2, u"0.3"},
        {-19.999999999999996, u"-20"},
        {123456789012345.98, u"123456789012346"},
        {1.7976931348623157e308, u"1.79769313486232E+308"},
        {5e-324, u"4.94065645841247E-324"},
        {std::numeric_limits<double>::infinity(), u"1.#INF"},
        {-std::numeric_limits<double>::infinity(), u"-1.#INF"},
        {std::nan(""), u"1.#QNAN"},
    };
    for (const auto& c : cases) EXPECT_EQ(DoubleToText(c.value), c.text) << c.value;
}

// What was written reads back as the same 15 digits.
TEST(DoubleToText, ReadsBack) {
    for (int exponent = -320; exponent <= 307; ++exponent) {
        const double value = 1.23456789012345 * std::pow(10.0, exponent);
        const Text text = DoubleToText(value);
        EXPECT_EQ(DoubleToText(NumericValue(text)), text) << exponent;
    }
}

TEST(IntegerToText, CoversTheWholeRange) {
    EXPECT_EQ(IntegerToText(0), u"0");
    EXPECT_EQ(IntegerToText(-32768), u"-32768");
    EXPECT_EQ(IntegerToText(INT64_MIN), u"-9223372036854775808");
    EXPECT_EQ(IntegerToText(INT64_MAX), u"9223372036854775807");
    Text digits = u"1";
    for (std::int64_t power = 1; digits.size() < 19; power *= 10, digits += u'0') {
        EXPECT_EQ(IntegerToText(power), digits);
        EXPECT_EQ(IntegerToText(-power), u"-" + digits);
        EXPECT_EQ(IntegerToText(power * 10 - 1), Text(digits.size(), u'9'));
    }
}

TEST(FormatFixed, RoundsHalfAwayFromZero) {
    const struct {
        double value;
        int decimals;
        TextView text;
    } cases[] = {
        {12.346, 2, u"12.35"},
        {2.5, 0, u"3"},
        {-2.5, 0, u"-3"},
        {0.5, 0, u"1"},
        {0.4999, 0, u"0"},
        {1.005, 2, u"1.01"},  // by its decimal form, though the double lies below
        {0.125, 2, u"0.13"},
        {9.995, 2, u"10.00"},
        {0.05, 1, u"0.1"},
        {0.04, 1, u"0.0"},
        {-0.001, 2, u"0.00"},
        {-0.005, 2, u"-0.01"},
        {0.000012, 5, u"0.00001"},
        {123456789, 3, u"123456789.000"},
        {1e20, 1, u"100000000000000000000.0"},
        {1.5, -1, u"2"},
    };
    for (const auto& c : cases) EXPECT_EQ(FormatFixed(c.value, c.decimals), c.text) << c.value;
}

TEST(Rounding, GoesHalfToEven) {
    const struct {
        double value;
        int rounded;
    } cases[] = {{0.5, 0},   {1.5, 2},    {2.5, 2},  {-0.5, 0},  {-1.5, -2},
                 {-2.5, -2}, {2.5001, 3}, {2.49, 2}, {-7.6, -8}, {0.49999999999999994, 0}};
    for (const auto& c : cases) {
        EXPECT_EQ(RoundToLong(c.value), c.rounded) << c.value;
    }
    EXPECT_EQ(RoundToLong(2147483647.5 - 0.01), 2147483647);
    EXPECT_EQ(RoundToLong(-2147483648.5), INT32_MIN);
}

TEST(Rounding, RaisesOverflow) {
    for (const double value : {2147483647.5, -2147483649.0, 1e300, std::nan("")}) {
        EXPECT_EQ(test::ErrorOf([&] { RoundToLong(value); }), 6) << value;
    }
}

}  // namespace
}  // namespace qvx
