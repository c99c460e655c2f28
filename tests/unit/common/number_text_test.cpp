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

// Against the C library's: numbers of few decimals, which have a way of their own that must not be taken a step too far
// (all sizes, all counts of decimals), nearly a half of the fifteenth digit, at times behind nines, any double at all,
// and the doubles around each.
TEST(DoubleToText, IsTheFifteenDigitForm) {
    std::mt19937_64 random(15);
    const auto below = [&](double limit) {
        return static_cast<long long>(random() % static_cast<std::uint64_t>(limit));
    };
    for (int round = 0; round < 10000; ++round) {
        double middle = 0;
        if (round % 4 == 0) {
            const std::uint64_t bits = random();
            std::memcpy(&middle, &bits, sizeof middle);
            if (!std::isfinite(middle)) continue;
        } else {
            const long long whole = round % 4 == 1   ? below(std::pow(10.0, 1 + static_cast<int>(below(16))))
                                    : round % 4 == 2 ? below(9e14) + 100'000'000'000'000
                                                     : 999'999'999'999'999 - (1LL << below(40));
            const std::string ending =
                round % 4 == 1 ? "e-" + std::to_string(below(9)) : "5e-" + std::to_string(1 + below(20));
            middle = std::stod((round % 8 < 4 ? "-" : "") + std::to_string(whole) + ending);
        }
        double down = middle;
        double up = middle;
        for (int step = 0; step < 6; ++step) {
            EXPECT_EQ(Got(down), FifteenDigits(down));
            EXPECT_EQ(Got(up), FifteenDigits(up));
            down = std::nextafter(down, -1e300);
            up = std::nextafter(up, 1e300);
        }
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
        {999999999999999.4, u"999999999999999"},
        {999999999999999.6, u"1E+15"},
        {1e15, u"1E+15"},
        {0.0001, u"0.0001"},
        {0.00001, u"1E-05"},
        {0.0000999999999999999999, u"0.0001"},
        {5e-324, u"4.94065645841247E-324"},
        {std::numeric_limits<double>::infinity(), u"1.#INF"},
        {-std::numeric_limits<double>::infinity(), u"-1.#INF"},
        {std::nan(""), u"1.#QNAN"},
    };
    for (const auto& c : cases) EXPECT_EQ(DoubleToText(c.value), c.text) << c.value;
}

TEST(IntegerToText, CoversTheWholeRange) {
    EXPECT_EQ(IntegerToText(0), u"0");
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
        {0.4999, 0, u"0"},
        {1.005, 2, u"1.01"},  // by its decimal form, though the double lies below
        {9.995, 2, u"10.00"},
        {0.05, 1, u"0.1"},
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
    for (const double value : {2147483647.5, -2147483649.0, 1e300, std::nan("")}) {
        EXPECT_EQ(test::ErrorOf([&] { RoundToLong(value); }), 6) << value;
    }
}

}  // namespace
}  // namespace qvx
