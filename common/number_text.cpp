#include "common/number_text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string>

#include "common/nearest_double.h"
#include "common/run_time_error.h"

namespace qvx {
namespace {

constexpr int maxSignificantDigits = 15;

// A finite value as 0.d1d2d3… times ten to the power of `point`; zero has no digits, other values no trailing zeros.
struct Decimal {
    bool negative = false;
    std::string digits;
    int point = 0;
};

// A number of exactly 15 digits, divided by ten to the power of `decimals`.
struct Rounded {
    std::uint64_t digits = 0;
    int decimals = 0;
};

constexpr auto powersOfFive = [] {
    std::array<std::uint64_t, 20> powers{1};
    for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 5;
    return powers;
}();

// Multiplies by a power of ten, exactly, and rounds half to even. The product of the 53 bits of the value and the power
// of five has at most 98 bits; the power of two is part of the shift, which is between 3 and 52 bits for all values
// that RoundToDigits takes.
std::uint64_t ScaleExactly(std::uint64_t mantissa, int exponent, int decimals) {
    constexpr std::uint64_t lowHalf = 0xFFFFFFFF;
    const std::uint64_t power = powersOfFive[static_cast<std::size_t>(decimals)];
    const std::uint64_t low = (mantissa & lowHalf) * (power & lowHalf);
    const std::uint64_t middle = (mantissa & lowHalf) * (power >> 32) + (mantissa >> 32) * (power & lowHalf);
    const std::uint64_t bits = low + (middle << 32);
    const std::uint64_t high = (mantissa >> 32) * (power >> 32) + (middle >> 32) + (bits < low ? 1 : 0);
    const int shift = -(exponent + decimals);
    const std::uint64_t whole = high << (64 - shift) | bits >> shift;
    const std::uint64_t half = std::uint64_t{1} << (shift - 1);
    const std::uint64_t rest = bits & (2 * half - 1);
    return whole + (rest > half || (rest == half && whole % 2 != 0) ? 1 : 0);
}

// Rounds a value from 0.0001 up to what rounds to 1E+15; returns nothing for all others. Needs no table and no long
// numbers, as what writes all doubles would.
std::optional<Rounded> RoundToDigits(double value) {
    constexpr std::uint64_t limit = 1'000'000'000'000'000;
    const double size = std::fabs(value);
    if (!(size >= 1e-4 && size < 1e15)) return std::nullopt;
    constexpr int mantissaBits = 52;
    const auto bits = std::bit_cast<std::uint64_t>(size);
    const std::uint64_t mantissa = (bits & ((std::uint64_t{1} << mantissaBits) - 1)) | std::uint64_t{1} << mantissaBits;
    const int power = static_cast<int>(bits >> mantissaBits) - 1023;
    // The decimal exponent that the binary one implies is right, or one too small.
    const int guess = static_cast<int>(std::floor(power * 0.30102999566398120));
    int decimals = maxSignificantDigits - 1 - guess;
    std::uint64_t digits = ScaleExactly(mantissa, power - mantissaBits, decimals);
    if (digits >= limit && decimals == 0) return std::nullopt;
    if (digits >= limit) digits = ScaleExactly(mantissa, power - mantissaBits, --decimals);
    return Rounded{digits, decimals};
}

Decimal ToDecimal(double value) {
    Decimal decimal;
    decimal.negative = std::signbit(value);
    if (const auto rounded = RoundToDigits(value)) {
        decimal.digits = std::to_string(rounded->digits);
        decimal.point = maxSignificantDigits - rounded->decimals;
    } else if (value != 0) {
        constexpr std::uint64_t limit = 1'000'000'000'000'000;
        const int power = std::ilogb(value);
        // The decimal exponent that the binary one implies is right, or one too small.
        int decimals = maxSignificantDigits - 1 - static_cast<int>(std::floor(power * 0.30102999566398120));
        std::uint64_t digits = RoundToWhole(std::fabs(value), decimals);
        if (digits >= limit) digits = RoundToWhole(std::fabs(value), --decimals);
        decimal.digits = std::to_string(digits);
        decimal.point = maxSignificantDigits - decimals;
    }
    decimal.digits.erase(decimal.digits.find_last_not_of('0') + 1);
    return decimal;
}

Text Widen(const std::string& ascii) { return Text(ascii.begin(), ascii.end()); }

// Returns the digits before the point, padded with zeros; at least one.
std::string WholePart(const Decimal& decimal) {
    if (decimal.point <= 0) return "0";
    std::string whole = decimal.digits.substr(0, static_cast<std::size_t>(decimal.point));
    whole.resize(static_cast<std::size_t>(decimal.point), '0');
    return whole;
}

std::string FractionPart(const Decimal& decimal) {
    const auto length = static_cast<int>(decimal.digits.size());
    if (decimal.point >= length) return {};
    if (decimal.point >= 0) return decimal.digits.substr(static_cast<std::size_t>(decimal.point));
    return std::string(static_cast<std::size_t>(-decimal.point), '0') + decimal.digits;
}

// Cuts the digits after the given decimal and rounds half away from zero.
void RoundHalfAway(Decimal& decimal, int decimals) {
    const int kept = decimal.point + decimals;
    if (kept >= static_cast<int>(decimal.digits.size())) return;
    if (kept < 0) {
        decimal.digits.clear();
        return;
    }
    const auto cut = static_cast<std::size_t>(kept);
    const bool up = decimal.digits[cut] >= '5';
    decimal.digits.resize(cut);
    if (!up) return;
    while (!decimal.digits.empty() && decimal.digits.back() == '9') decimal.digits.pop_back();
    if (decimal.digits.empty()) {
        decimal.digits = "1";
        ++decimal.point;
    } else {
        ++decimal.digits.back();
    }
}

std::string NotFiniteText(double value) {
    if (std::isnan(value)) return "1.#QNAN";
    return value < 0 ? "-1.#INF" : "1.#INF";
}

// ---- Doubles without an exponent -----------------------------------------------------------------------------------

// The position of the decimal point in the buffer: the space before it is enough for the digits of any whole number,
// which are always written eight at a time.
constexpr std::size_t pointAt = 24;

constexpr auto digitPairs = [] {
    std::array<char16_t, 200> pairs{};
    for (std::size_t i = 0; i < pairs.size(); ++i)
        pairs[i] = static_cast<char16_t>(u'0' + (i % 2 == 0 ? i / 20 : i / 2 % 10));
    return pairs;
}();

void WritePair(std::uint32_t value, char16_t* to) { std::copy_n(digitPairs.data() + std::size_t{2} * value, 2, to); }

// Writes eight digits before `end`, with leading zeros. Returns where the number's own digits begin.
char16_t* WriteBelow100Million(std::uint32_t value, char16_t* end) {
    const std::uint32_t high = value / 10'000;
    const std::uint32_t low = value % 10'000;
    WritePair(high / 100, end - 8);
    WritePair(high % 100, end - 6);
    WritePair(low / 100, end - 4);
    WritePair(low % 100, end - 2);
    // A sum of comparisons, since no processor can predict how long the next number is.
    const int digits = 1 + (value >= 10) + (value >= 100) + (value >= 1000) + (value >= 10'000) + (value >= 100'000) +
                       (value >= 1'000'000) + (value >= 10'000'000);
    return end - digits;
}

char16_t* WriteWhole(std::uint64_t value, char16_t* end) {
    constexpr std::uint64_t limit = 100'000'000;
    for (; value >= limit; value /= limit, end -= 8)
        WriteBelow100Million(static_cast<std::uint32_t>(value % limit), end);
    return WriteBelow100Million(static_cast<std::uint32_t>(value), end);
}

// Writes the decimals after the point, an even number of them (`count`), without trailing zeros, and without the point
// when no decimal is left. Returns where they end.
template <int count>
char16_t* WriteFraction(std::uint32_t value, char16_t* point) {
    if constexpr (count > 2)
        if (value % 10'000 == 0) return WriteFraction<count - 4>(value / 10'000, point);
    *point = u'.';
    char16_t* end = point + 1 + count;
    for (char16_t* at = end; at > point + 1; value /= 100) WritePair(value % 100, at -= 2);
    if constexpr (count <= 2) return point[1] == u'0' && point[count] == u'0' ? point : end - (point[count] == u'0');
    while (end[-1] == u'0') --end;
    return end;
}

// A text in a NumberBuffer; `begin` is null when there is none.
struct Written {
    char16_t* begin = nullptr;
    char16_t* end = nullptr;
};

// Writes the number when it has at most that many decimals, apart from the inaccuracy in the last bits of a double.
//
// The number with that many decimals next to the value is certain where it has at most 15 digits. It is the 15-digit
// form when no other number of 15 digits is nearer, that is, when its distance from the value is at most half of the
// distance between two such numbers, which is at least 5e-16 of the value. Scaling adds an error of at most 2^-53 of
// the value, 1.1e-16.
template <int decimals>
Written WriteDecimal(double value, NumberBuffer& buffer) {
    constexpr std::int64_t scale = decimals == 6 ? 1'000'000 : decimals == 2 ? 100 : 1;
    constexpr double closeness = 3.5e-16;
    const double scaled = std::fabs(value) * static_cast<double>(scale);
    // NOLINTNEXTLINE(bugprone-incorrect-roundings): the next line refuses the result where it is not the nearest.
    const auto units = static_cast<std::int64_t>(scaled + 0.5);
    if (!(std::fabs(scaled - static_cast<double>(units)) <= scaled * closeness)) return {};
    char16_t* const point = buffer.data() + pointAt;
    char16_t* begin = WriteWhole(static_cast<std::uint64_t>(units / scale), point);
    if (value < 0) *--begin = u'-';
    if constexpr (decimals == 0) return {begin, point};
    return {begin, WriteFraction<decimals>(static_cast<std::uint32_t>(units % scale), point)};
}

// Nearly all numbers in cells have few decimals. Returns nothing for a number with more, and for large or small ones.
Written WriteQuickly(double value, NumberBuffer& buffer) {
    const double size = std::fabs(value);
    if (size < 1e9) return size >= 1e-4 || size == 0 ? WriteDecimal<6>(value, buffer) : Written();
    if (size < 1e13) return WriteDecimal<2>(value, buffer);
    return size < 1e15 ? WriteDecimal<0>(value, buffer) : Written();
}

// Writes a number with more decimals than WriteQuickly takes; nothing for numbers that are large or small. Returns
// where the text ends, or nullptr.
char16_t* WriteDigits(double value, char16_t* to) {
    const auto rounded = RoundToDigits(value);
    if (!rounded) return nullptr;
    std::array<char16_t, 16> buffer;  // written eight digits at a time
    char16_t* end = buffer.data() + buffer.size();
    const char16_t* digit = WriteWhole(rounded->digits, end);
    const int wholeDigits = std::max(maxSignificantDigits - rounded->decimals, 0);
    const char16_t* const point = digit + wholeDigits;
    while (end > point && end[-1] == u'0') --end;
    if (value < 0) *to++ = u'-';
    to = wholeDigits > 0 ? std::copy(digit, point, to) : std::fill_n(to, 1, u'0');
    if (point == end) return to;
    *to++ = u'.';
    to = std::fill_n(to, std::max(rounded->decimals - maxSignificantDigits, 0), u'0');
    return std::copy(point, static_cast<const char16_t*>(end), to);
}

// ---- All doubles ---------------------------------------------------------------------------------------------------

std::string FullText(double value) {
    const Decimal decimal = ToDecimal(value);
    if (decimal.digits.empty()) return "0";
    std::string text = decimal.negative ? "-" : "";
    const int exponent = decimal.point - 1;
    if (exponent < -4 || exponent >= maxSignificantDigits) {
        text += decimal.digits[0];
        if (decimal.digits.size() > 1) text.append(".").append(decimal.digits, 1);
        const std::string power = std::to_string(std::abs(exponent));
        text.append(exponent < 0 ? "E-" : "E+").append(power.size() < 2 ? "0" : "").append(power);
    } else {
        const std::string fraction = FractionPart(decimal);
        text += WholePart(decimal);
        if (!fraction.empty()) text.append(".").append(fraction);
    }
    return text;
}

}  // namespace

TextView DoubleToText(double value, NumberBuffer& buffer) {
    if (const Written text = WriteQuickly(value, buffer); text.begin)
        return {text.begin, static_cast<std::size_t>(text.end - text.begin)};
    char16_t* const begin = buffer.data();
    char16_t* end = WriteDigits(value, begin);
    if (!end) {
        const std::string text = std::isfinite(value) ? FullText(value) : NotFiniteText(value);
        end = std::copy(text.begin(), text.end(), begin);
    }
    return {begin, static_cast<std::size_t>(end - begin)};
}

Text DoubleToText(double value) {
    NumberBuffer buffer;
    return Text(DoubleToText(value, buffer));
}

Text IntegerToText(std::int64_t value) {
    NumberBuffer buffer;
    char16_t* const end = buffer.data() + pointAt;
    const auto bits = static_cast<std::uint64_t>(value);
    char16_t* begin = WriteWhole(value < 0 ? 0 - bits : bits, end);
    if (value < 0) *--begin = u'-';
    return Text(begin, end);
}

Text FormatFixed(double value, int decimals) {
    if (!std::isfinite(value)) return Widen(NotFiniteText(value));
    decimals = std::clamp(decimals, 0, 32767);
    Decimal decimal = ToDecimal(value);
    RoundHalfAway(decimal, decimals);
    if (decimal.digits.empty()) decimal = {};
    std::string fraction = FractionPart(decimal);
    fraction.resize(static_cast<std::size_t>(decimals), '0');
    std::string text = decimal.negative ? "-" : "";
    text += WholePart(decimal);
    if (decimals > 0) text.append(".").append(fraction);
    return Widen(text);
}

double RoundHalfEven(double value) {
    const double whole = std::floor(value);
    const double rest = value - whole;
    if (rest < 0.5) return whole;
    if (rest > 0.5) return whole + 1;
    return std::fmod(whole, 2) == 0 ? whole : whole + 1;
}

std::int32_t RoundToLong(double value) {
    const double rounded = RoundHalfEven(value);
    if (!(rounded >= -2147483648.0 && rounded <= 2147483647.0)) throw RunTimeError(errors::overflow, u"Overflow");
    return static_cast<std::int32_t>(rounded);
}

}  // namespace qvx
