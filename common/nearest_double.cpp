#include "common/nearest_double.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cassert>
#include <limits>

namespace qvx {
namespace {

constexpr int lowestExponent = -1074;  // of the lowest bit of all doubles
constexpr int doubleBits = std::numeric_limits<double>::digits;

int BitsOf(std::uint64_t value) { return std::bit_width(value); }

// A natural number that is as long as the largest that a double's decimals need.
class LongNumber {
  public:
    LongNumber() = default;
    explicit LongNumber(std::uint64_t value) {
        for (; value != 0; value >>= wordBits) Append(static_cast<std::uint32_t>(value));
    }

    void MultiplyAndAdd(std::uint32_t factor, std::uint32_t added) {
        std::uint64_t carry = added;
        for (int i = 0; i < size_; ++i) {
            carry += std::uint64_t{Word(i)} * factor;
            Word(i) = static_cast<std::uint32_t>(carry);
            carry >>= wordBits;
        }
        if (carry != 0) Append(static_cast<std::uint32_t>(carry));
    }

    void MultiplyByPowerOfFive(int power) {
        constexpr int step = 13;  // the largest power in a word
        constexpr std::uint32_t stepFactor = 1'220'703'125;
        for (; power >= step; power -= step) MultiplyAndAdd(stepFactor, 0);
        for (; power > 0; --power) MultiplyAndAdd(5, 0);
    }

    void ShiftLeft(int bits) {
        for (; bits >= wordBits; bits -= wordBits) {
            Append(0);
            std::copy_backward(words_.begin(), words_.begin() + size_ - 1, words_.begin() + size_);
            Word(0) = 0;
        }
        if (bits != 0) MultiplyAndAdd(std::uint32_t{1} << bits, 0);
    }

    int Bits() const { return (size_ - 1) * wordBits + BitsOf(Word(size_ - 1)); }
    bool IsZero() const { return size_ == 0; }

    bool operator<(const LongNumber& other) const {
        if (size_ != other.size_) return size_ < other.size_;
        for (int i = size_ - 1; i >= 0; --i)
            if (Word(i) != other.Word(i)) return Word(i) < other.Word(i);
        return false;
    }

    // Subtracts a number that is not larger.
    void operator-=(const LongNumber& other) {
        std::uint64_t borrow = 0;
        for (int i = 0; i < size_; ++i) {
            const std::uint64_t taken = (i < other.size_ ? other.Word(i) : 0) + borrow;
            borrow = Word(i) < taken ? 1 : 0;
            Word(i) = static_cast<std::uint32_t>(Word(i) - taken);
        }
        while (size_ > 0 && Word(size_ - 1) == 0) --size_;
    }

  private:
    static constexpr int wordBits = 32;
    // The digits have at most 2595 bits, and the power of five that divides the smallest number has 2743.
    static constexpr std::size_t capacity = 88;

    std::uint32_t& Word(int i) { return words_[static_cast<std::size_t>(i)]; }
    std::uint32_t Word(int i) const { return words_[static_cast<std::size_t>(i)]; }
    void Append(std::uint32_t word) {
        assert(static_cast<std::size_t>(size_) < capacity);
        Word(size_++) = word;
    }

    int size_ = 0;  // the highest word is not 0
    std::array<std::uint32_t, capacity> words_;
};

}  // namespace

double RoundToDouble(std::uint64_t number, int exponent, bool inexact) {
    constexpr int smallest = std::numeric_limits<double>::min_exponent - 1;  // of the leading bit of a normal number
    constexpr std::uint64_t infinity = std::uint64_t{0x7FF} << (doubleBits - 1);
    const int leading = BitsOf(number) - 1 + exponent;
    if (leading >= std::numeric_limits<double>::max_exponent) return std::numeric_limits<double>::infinity();
    const int kept = doubleBits - std::max(0, smallest - leading);
    if (kept < 0) return 0;
    const int dropped = BitsOf(number) - kept;
    std::uint64_t mantissa = number << std::max(0, -dropped);
    if (dropped > 0) {
        const std::uint64_t half = std::uint64_t{1} << (dropped - 1);
        const std::uint64_t rest = number & (2 * half - 1);
        mantissa = number >> dropped;
        if (rest > half || (rest == half && (inexact || mantissa % 2 != 0))) ++mantissa;
    }
    // A carry out of the mantissa increases the exponent, as it should.
    const int field = std::max(0, leading - smallest);
    const std::uint64_t bits = (static_cast<std::uint64_t>(field) << (doubleBits - 1)) + mantissa;
    return std::bit_cast<double>(std::min(bits, infinity));
}

double NearestDouble(std::span<const std::uint8_t> digits, int magnitude) {
    assert(!digits.empty() && digits.size() <= maxDecimalDigits && digits.front() != 0);
    assert(magnitude >= -maxDecimalMagnitude && magnitude <= maxDecimalMagnitude);
    LongNumber number;
    for (const std::uint8_t digit : digits) number.MultiplyAndAdd(10, digit);
    LongNumber divisor(1);
    const int scale = magnitude - static_cast<int>(digits.size());
    number.MultiplyByPowerOfFive(std::max(0, scale));
    divisor.MultiplyByPowerOfFive(std::max(0, -scale));

    // Both are brought to the same number of bits, so that the quotient is between a half and 2.
    const int shift = divisor.Bits() - number.Bits();
    number.ShiftLeft(std::max(0, shift));
    divisor.ShiftLeft(std::max(0, -shift));
    constexpr int quotientBits = doubleBits + 2;
    std::uint64_t quotient = 0;
    for (int i = 0; i < quotientBits; ++i) {
        quotient *= 2;
        if (!(number < divisor)) {
            number -= divisor;
            ++quotient;
        }
        number.ShiftLeft(1);
    }
    return RoundToDouble(quotient, scale - shift - (quotientBits - 1), !number.IsZero());
}

std::uint64_t RoundToWhole(double value, int decimals) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    const int field = static_cast<int>(bits >> (doubleBits - 1));
    std::uint64_t mantissa = bits & ((std::uint64_t{1} << (doubleBits - 1)) - 1);
    if (field != 0) mantissa |= std::uint64_t{1} << (doubleBits - 1);
    LongNumber number(mantissa);
    LongNumber divisor(1);
    const int power = std::max(field, 1) + lowestExponent - 1 + decimals;
    number.MultiplyByPowerOfFive(std::max(0, decimals));
    divisor.MultiplyByPowerOfFive(std::max(0, -decimals));
    number.ShiftLeft(std::max(0, power));
    divisor.ShiftLeft(std::max(0, -power));

    const int steps = number.Bits() - divisor.Bits();
    assert(steps >= 0 && steps < 62);
    divisor.ShiftLeft(steps);
    std::uint64_t quotient = 0;
    for (int i = 0; i <= steps; ++i) {
        quotient *= 2;
        if (!(number < divisor)) {
            number -= divisor;
            ++quotient;
        }
        number.ShiftLeft(1);
    }
    // What is left has been doubled once more, so that the divisor is a half.
    if (divisor < number || (!(number < divisor) && quotient % 2 != 0)) ++quotient;
    return quotient;
}

double NearestDecimalFraction(std::uint64_t number, int decimals) {
    assert(number <= std::uint64_t{1} << doubleBits && decimals >= 0 && decimals <= 22);
    if (number == 0) return 0;
    std::uint64_t divisor = 1;
    for (int i = 0; i < decimals; ++i) divisor *= 5;
    std::uint64_t quotient = number / divisor;
    std::uint64_t rest = number % divisor;
    int exponent = -decimals;
    // The quotient gets as many further bits at a time as the remainder has room for.
    while (rest != 0 && BitsOf(quotient) < doubleBits + 1) {
        const int bits = std::min(64 - BitsOf(divisor), 63 - BitsOf(quotient));
        rest <<= bits;
        quotient = quotient << bits | rest / divisor;
        rest %= divisor;
        exponent -= bits;
    }
    return RoundToDouble(quotient, exponent, rest != 0);
}

}  // namespace qvx
