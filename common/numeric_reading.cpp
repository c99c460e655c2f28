#include "common/numeric_reading.h"

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <limits>

#include "common/ascii.h"
#include "common/nearest_double.h"
#include "common/run_time_error.h"

namespace qvx {
namespace {

constexpr std::array<double, 23> powersOfTen = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                                1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

constexpr bool IsSkipped(unsigned c) { return c == ' ' || c == '\t' || c == '\n'; }
constexpr bool IsExponentMark(unsigned c) { return c == 'E' || c == 'e' || c == 'D' || c == 'd'; }

// Whether this character after a plain decimal requires the full reading instead of the quick one.
constexpr bool NeedsFullReading(unsigned c) { return IsSkipped(c) || IsExponentMark(c) || c == '%' || c == '&'; }

// Collects decimal digits. More digits than can matter to a double are counted but not kept, so that nothing is ever
// allocated.
class DecimalDigits {
  public:
    void Add(unsigned digit, bool behindPoint) {
        any_ = true;
        if (length_ == 0 && digit == 0) {
            scale_ -= behindPoint ? 1 : 0;
        } else if (length_ < maxKept) {
            digits_[length_++] = static_cast<std::uint8_t>(digit);
            scale_ -= behindPoint ? 1 : 0;
        } else {
            lost_ = lost_ || digit != 0;
            scale_ += behindPoint ? 0 : 1;
        }
    }

    bool Any() const { return any_; }

    // Returns false when the value is too large for a double; a value that is too small becomes 0.
    bool ToDouble(bool negative, std::int64_t exponent, double& value) {
        value = negative ? -0.0 : 0.0;
        if (length_ == 0) return true;
        const std::int64_t scale = scale_ + exponent;
        const std::int64_t magnitude = static_cast<std::int64_t>(length_) + scale;
        if (magnitude > maxDecimalMagnitude) return false;
        if (magnitude < -maxDecimalMagnitude) return true;
        double read = 0;
        if (length_ <= std::numeric_limits<double>::digits10 && scale <= 0 && -scale < std::ssize(powersOfTen)) {
            std::uint64_t number = 0;
            for (std::size_t i = 0; i < length_; ++i) number = number * 10 + digits_[i];
            read = NearestDecimalFraction(number, static_cast<int>(-scale));
        } else {
            std::size_t end = length_;
            if (lost_) digits_[end++] = 1;  // any digit after the kept ones breaks a tie in the same way
            read = NearestDouble(std::span(digits_).first(end), static_cast<int>(magnitude));
        }
        if (std::isinf(read)) return false;
        value = negative ? -read : read;
        return true;
    }

  private:
    static constexpr std::size_t maxKept = maxDecimalDigits - 1;  // 767 digits decide the last tie of a double
    std::array<std::uint8_t, maxDecimalDigits> digits_;
    std::size_t length_ = 0;
    std::int64_t scale_ = 0;
    bool any_ = false;
    bool lost_ = false;
};

struct Reading {
    double value = 0;
    int error = 0;
};

// The full reading of Val over characters of either width.
template <class Char>
class ValReader {
  public:
    ValReader(const Char* begin, const Char* end) : at_(begin), end_(end) {}

    Reading Read() {
        unsigned c = Next();
        if (c == '&') {
            ++at_;
            return ReadRadix();
        }
        const bool negative = c == '-';
        if (c == '-' || c == '+') ++at_;
        return ReadDecimal(negative);
    }

  private:
    static constexpr unsigned atEnd = 0xFFFFFFFF;

    unsigned Here() const { return at_ == end_ ? atEnd : static_cast<unsigned>(*at_); }

    unsigned Next() {
        while (at_ != end_ && IsSkipped(static_cast<unsigned>(*at_))) ++at_;
        return Here();
    }

    Reading ReadDecimal(bool negative) {
        DecimalDigits digits;
        bool point = false;
        std::int64_t whole = 0;  // kept up to beyond 32 bits, for the type characters
        const Char* behind = at_;
        for (;; ++at_, behind = at_) {
            const unsigned c = Next();
            if (IsDigit(c)) {
                digits.Add(c - '0', point);
                whole = std::min<std::int64_t>(whole * 10 + (c - '0'), std::int64_t{1} << 40);
            } else if (c == '.' && !point) {
                point = true;
            } else {
                break;
            }
        }
        if (!digits.Any()) return {};
        std::int64_t exponent = 0;
        const bool hasExponent = ReadExponent(exponent);
        if (!hasExponent) at_ = behind;  // a type character counts only directly after the number
        const unsigned type = Here();
        if (type == '%' || type == '&') {
            if (point || hasExponent) return {0, errors::typeMismatch};
            const std::int64_t limit =
                (type == '%' ? std::int64_t{0x7FFF} : std::int64_t{0x7FFFFFFF}) + (negative ? 1 : 0);
            if (whole > limit) return {0, errors::overflow};
        }
        Reading reading;
        if (!digits.ToDouble(negative, exponent, reading.value)) return {0, errors::overflow};
        return reading;
    }

    // Reads an exponent, or nothing at all when no digit follows its mark and sign.
    bool ReadExponent(std::int64_t& exponent) {
        const Char* const before = at_;
        if (!IsExponentMark(Next())) return false;
        ++at_;
        const unsigned sign = Next();
        if (sign == '-' || sign == '+') ++at_;
        bool any = false;
        const Char* behind = at_;
        for (unsigned c = Next(); IsDigit(c); c = Next()) {
            any = true;
            exponent = std::min<std::int64_t>(exponent * 10 + (c - '0'), 1'000'000'000'000);
            behind = ++at_;
        }
        at_ = any ? behind : before;
        if (sign == '-') exponent = -exponent;
        return any;
    }

    Reading ReadRadix() {
        unsigned radix = 8;
        const unsigned mark = Next() | 0x20;
        if (mark == 'h' || mark == 'o') {
            ++at_;
            radix = mark == 'h' ? 16 : 8;
        }
        std::uint64_t value = 0;
        const Char* behind = at_;
        for (unsigned digit = DigitOf(Next()); digit < radix; digit = DigitOf(Next())) {
            value = std::min<std::uint64_t>(value * radix + digit, std::uint64_t{1} << 40);
            behind = ++at_;
        }
        at_ = behind;
        if (value > 0xFFFFFFFF) return {0, errors::overflow};
        const unsigned type = Here();
        if (type == '%' && value > 0xFFFF) return {0, errors::overflow};
        if (value <= 0xFFFF && type != '&') return {static_cast<double>(static_cast<std::int16_t>(value)), 0};
        return {static_cast<double>(static_cast<std::int32_t>(value)), 0};
    }

    // A character that is not a digit is beyond every radix.
    static unsigned DigitOf(unsigned c) { return static_cast<unsigned>(HexDigitValue(c)); }

    const Char* at_;
    const Char* end_;
};

// Reads a whole text in one pass; ReadNumeric documents the grammar.
template <class Char>
std::optional<double> ReadWholeNumeric(const Char* at, const Char* end) {
    while (at != end && IsBlank(static_cast<unsigned>(*at))) ++at;
    while (at != end && IsBlank(static_cast<unsigned>(end[-1]))) --end;
    const bool leadingSign = at != end && (*at == '-' || *at == '+');
    bool negative = leadingSign && *at == '-';
    if (leadingSign) ++at;
    DecimalDigits digits;
    bool point = false;
    for (; at != end; ++at) {
        const auto c = static_cast<unsigned>(*at);
        if (IsDigit(c)) {
            digits.Add(c - '0', point);
        } else if (c == '.' && !point) {
            point = true;
        } else if (c != ',' || point || !digits.Any()) {
            break;
        }
    }
    if (!digits.Any()) return std::nullopt;
    std::int64_t exponent = 0;
    if (at != end && (*at == 'E' || *at == 'e')) {
        ++at;
        const bool negativeExponent = at != end && *at == '-';
        if (at != end && (*at == '-' || *at == '+')) ++at;
        if (at == end || !IsDigit(static_cast<unsigned>(*at))) return std::nullopt;
        for (; at != end && IsDigit(static_cast<unsigned>(*at)); ++at)
            exponent = std::min<std::int64_t>(exponent * 10 + (*at - '0'), 1'000'000'000'000);
        if (negativeExponent) exponent = -exponent;
    }
    if (at != end && !leadingSign && (*at == '-' || *at == '+')) {
        negative = *at == '-';
        ++at;
    }
    double value = 0;
    if (at != end || !digits.ToDouble(negative, exponent, value)) return std::nullopt;
    return value;
}

template <class Char>
[[gnu::noinline]] double FullNumericValue(const Char* begin, const Char* end) {
    const Reading reading = ValReader<Char>(begin, end).Read();
    if (reading.error == 0) return reading.value;
    const Char* stop = std::find_if_not(
        begin, end, [](Char c) { return IsDigit(static_cast<unsigned>(c)) || c == '+' || c == '-' || c == '.'; });
    return ReadWholeNumeric(begin, stop).value_or(0);
}

// Reads plain decimals, which nearly all cells contain: up to 2^53 and 22 decimals, the quotient of two exact doubles
// is the nearest double. Everything else goes through the full reading.
template <class Char>
double QuickNumericValue(const Char* const begin, const Char* const end) {
    const Char* at = begin;
    bool negative = false;
    if (at != end && (*at == '-' || *at == '+')) negative = *at++ == '-';
    const Char* const firstDigit = at;
    std::uint64_t mantissa = 0;
    for (; at != end && IsDigit(static_cast<unsigned>(*at)); ++at)
        mantissa = mantissa * 10 + (static_cast<unsigned>(*at) - '0');
    auto digits = at - firstDigit;
    decltype(digits) decimals = 0;
    if (at != end && *at == '.') {
        const Char* const firstDecimal = ++at;
        for (; at != end && IsDigit(static_cast<unsigned>(*at)); ++at)
            mantissa = mantissa * 10 + (static_cast<unsigned>(*at) - '0');
        decimals = at - firstDecimal;
        digits += decimals;
    }
    // 19 digits cannot have overflowed the mantissa.
    if (digits > 19 || mantissa > (std::uint64_t{1} << 53) ||
        (at != end && NeedsFullReading(static_cast<unsigned>(*at))))
        return FullNumericValue(begin, end);
    if (digits == 0) return 0;
    double value = static_cast<double>(static_cast<std::int64_t>(mantissa));
    if (decimals != 0) {
        // Where doubles are computed in wider registers, the quotient would be rounded twice.
        value = FLT_EVAL_METHOD != 0 ? NearestDecimalFraction(mantissa, static_cast<int>(decimals))
                                     : value / powersOfTen[static_cast<std::size_t>(decimals)];
    }
    return negative ? -value : value;
}

}  // namespace

double Val(TextView text) {
    const Reading reading = ValReader<char16_t>(text.data(), text.data() + text.size()).Read();
    if (reading.error == errors::overflow) throw RunTimeError(errors::overflow, u"Overflow");
    if (reading.error != 0) throw RunTimeError(reading.error, u"Type mismatch");
    return reading.value;
}

std::optional<double> ReadNumeric(TextView text) noexcept {
    return ReadWholeNumeric(text.data(), text.data() + text.size());
}

bool IsNumeric(TextView text) noexcept { return ReadNumeric(text).has_value(); }

// Sums call these for every cell; where the short loops for digits cross a line of the cache, they take a sixth longer.
[[gnu::aligned(64)]] double NumericValue(TextView text) noexcept {
    return QuickNumericValue(text.data(), text.data() + text.size());
}

[[gnu::aligned(64)]] double NumericValue(std::string_view latin1) noexcept {
    const auto* const begin = reinterpret_cast<const unsigned char*>(latin1.data());
    return QuickNumericValue(begin, begin + latin1.size());
}

}  // namespace qvx
