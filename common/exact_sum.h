// A sum of doubles that is exact, so that the order of additions makes no difference, and what is added and subtracted
// again leaves no trace.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace qvx {

class ExactSum {
  public:
    // The value must be finite. Take the same time whatever the sum is.
    void Add(double value) { Change(value, false); }
    void Subtract(double value) { Change(value, true); }
    // Returns the double nearest to the sum; infinite when that is out of range.
    double Value() const;

  private:
    static constexpr int digitBits = 32;
    // The bits of all doubles, from the lowest on, and one digit for what many of them add up to.
    static constexpr std::size_t digits = (2046 + 53) / digitBits + 2;
    using Digits = std::array<std::int64_t, digits>;

    void Change(double value, bool subtract);
    static void Carry(Digits& sum);

    Digits sum_{};  // digits of 2^32, the lowest first; each may exceed its range until the next carry
    int sinceCarry_ = 0;
};

}  // namespace qvx
