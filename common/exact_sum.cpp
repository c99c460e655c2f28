#include "common/exact_sum.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <cmath>

#include "common/nearest_double.h"

namespace qvx {
namespace {

constexpr int storedBits = 52;      // of a double's mantissa
constexpr int sumExponent = -1074;  // of the lowest bit of the lowest digit
constexpr std::uint64_t digitMask = 0xFFFFFFFF;

}  // namespace

void ExactSum::Change(double value, bool subtract) {
    assert(std::isfinite(value));
    // A digit has room for 2^30 additions of up to 2^33 in all.
    constexpr int carryAfter = 1 << 29;
    const auto bits = std::bit_cast<std::uint64_t>(value);
    const auto field = static_cast<unsigned>(bits >> storedBits) & 0x7FF;
    std::uint64_t mantissa = bits & ((std::uint64_t{1} << storedBits) - 1);
    if (field != 0) mantissa |= std::uint64_t{1} << storedBits;
    const unsigned place = field == 0 ? 0 : field - 1;
    const unsigned shift = place % digitBits;
    const std::uint64_t low = (mantissa & digitMask) << shift;
    const std::uint64_t high = (mantissa >> digitBits) << shift;
    const std::int64_t sign = (bits >> 63 != 0) != subtract ? -1 : 1;
    std::int64_t* digit = sum_.data() + place / digitBits;
    digit[0] += sign * static_cast<std::int64_t>(low & digitMask);
    digit[1] += sign * static_cast<std::int64_t>((low >> digitBits) + (high & digitMask));
    digit[2] += sign * static_cast<std::int64_t>(high >> digitBits);
    if (++sinceCarry_ < carryAfter) return;
    sinceCarry_ = 0;
    Carry(sum_);
}

// Brings all digits except for the highest, which keeps the sign, into their range.
void ExactSum::Carry(Digits& sum) {
    std::int64_t carry = 0;
    for (std::size_t i = 0; i + 1 < sum.size(); ++i) {
        const std::int64_t digit = sum[i] + carry;
        sum[i] = static_cast<std::int64_t>(static_cast<std::uint64_t>(digit) & digitMask);
        carry = digit >> digitBits;
    }
    sum.back() += carry;
}

double ExactSum::Value() const {
    Digits sum = sum_;
    Carry(sum);
    const bool negative = sum.back() < 0;
    if (negative) {
        for (std::int64_t& digit : sum) digit = -digit;
        Carry(sum);
    }
    auto top = sum.size();
    while (top > 0 && sum[top - 1] == 0) --top;
    if (top == 0) return 0;
    // Two digits may have 33 bits only; a third one and the fact that there are more decide the rounding.
    std::uint64_t number = static_cast<std::uint64_t>(sum[top - 1]);
    std::size_t lowest = top - 1;
    int exponent = 0;
    while (lowest > 0 && std::bit_width(number) + digitBits <= 63)
        number = number << digitBits | static_cast<std::uint64_t>(sum[--lowest]);
    exponent = static_cast<int>(lowest) * digitBits + sumExponent;
    const int room = 63 - std::bit_width(number);
    std::uint64_t rest = 0;
    if (lowest > 0 && room > 0) {
        const auto next = static_cast<std::uint64_t>(sum[--lowest]);
        number = number << room | next >> (digitBits - room);
        rest = next & ((std::uint64_t{1} << (digitBits - room)) - 1);
        exponent -= room;
    }
    const bool inexact = rest != 0 || std::any_of(sum.begin(), sum.begin() + static_cast<std::ptrdiff_t>(lowest),
                                                  [](std::int64_t digit) { return digit != 0; });
    const double value = RoundToDouble(number, exponent, inexact);
    return negative ? -value : value;
}

}  // namespace qvx
