#include "common/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string>

#include "common/run_time_error.h"

namespace qvx {
namespace {

constexpr int maxSignificantDigits = 15;

// A finite value as 0.d1d2d3… times ten to the power of `point`; no digit for zero, no trailing zero otherwise.
struct Decimal {
    bool negative = false;
    std::string digits;
    int point = 0;
};

Decimal ToDecimal(double value) {
    Decimal decimal;
    decimal.negative = std::signbit(value);
    std::array<char, 64> buffer;
    const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::fabs(value),
                                       std::chars_format::scientific, maxSignificantDigits - 1);
    const char* const exponentMark = std::find(buffer.data(), written.ptr, 'e');
    std::copy_if(static_cast<const char*>(buffer.data()), exponentMark, std::back_inserter(decimal.digits),
                 [](char c) { return c != '.'; });
    const char* exponent = exponentMark + 1;
    if (*exponent == '+') ++exponent;
    std::from_chars(exponent, written.ptr, decimal.point);
    ++decimal.point;
    decimal.digits.erase(decimal.digits.find_last_not_of('0') + 1);
    return decimal;
}

Text Widen(const std::string& ascii) { return Text(ascii.begin(), ascii.end()); }

// Digits before the point, padded with zeros; at least one.
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

// Cuts the digits behind the given decimal, a half going away from zero.
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

Text NotFiniteText(double value) {
    if (std::isnan(value)) return u"1.#QNAN";
    return value < 0 ? u"-1.#INF" : u"1.#INF";
}

// Rounds decimals from `cut` on away, a half up; where those from `begin` on are then to end. nullptr when a further
// digit would be needed in front.
char* RoundUp(char* begin, char* cut) {
    char* end = cut;
    while (end != begin && (end[-1] == '9' || end[-1] == '.')) --end;
    if (end == begin || end[-1] == '-') return nullptr;
    ++end[-1];
    char* const point = std::find(begin, cut, '.');
    if (end > point) return end;  // what were nines behind the point are gone
    std::fill(end, point, '0');
    return point;
}

// The shortest text that reads as the same double is quickly found. Where it has no more than 15 digits no other
// decimal of 15 digits lies nearer. Where it has more it is rounded to 15: it lies on the same side of every half as
// the double itself, since a half in between would have been the shorter text, or as short and nearer; only when it is
// a half that does not tell. "" then, and for numbers that are large or small.
Text ShortText(double value) {
    if (!(std::fabs(value) < 1e15 && std::fabs(value) >= 1e-4)) return {};
    std::array<char, 32> buffer;
    char* const begin = buffer.data();
    const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed);
    if (written.ec != std::errc()) return {};
    char* end = written.ptr;
    char* const first = std::find_if_not(begin, end, [](char c) { return c == '-' || c == '0' || c == '.'; });
    const bool pointBehind = std::find(first, end, '.') != end;
    const std::ptrdiff_t kept = maxSignificantDigits + (pointBehind ? 1 : 0);
    if (end - first <= kept) return Text(begin, end);
    char* const cut = first + kept;  // behind the point: the whole part has no more than 15 digits
    if (*cut == '5' && cut + 1 == end) return {};
    end = *cut >= '5' ? RoundUp(begin, cut) : cut;
    if (!end) return {};
    const bool fraction = std::find(begin, end, '.') != end;
    while (fraction && end[-1] == '0') --end;
    if (end[-1] == '.') --end;
    return Text(begin, end);
}

}  // namespace

Text DoubleToText(double value) {
    if (Text text = ShortText(value); !text.empty()) return text;
    if (!std::isfinite(value)) return NotFiniteText(value);
    const Decimal decimal = ToDecimal(value);
    if (decimal.digits.empty()) return u"0";
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
    return Widen(text);
}

Text IntegerToText(std::int64_t value) { return Widen(std::to_string(value)); }

Text FormatFixed(double value, int decimals) {
    if (!std::isfinite(value)) return NotFiniteText(value);
    decimals = std::clamp(decimals, 0, 300);
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

std::int16_t RoundToInteger(double value) {
    const double rounded = RoundHalfEven(value);
    if (!(rounded >= -32768.0 && rounded <= 32767.0)) throw RunTimeError(errors::overflow, u"Overflow");
    return static_cast<std::int16_t>(rounded);
}

}  // namespace qvx
