// The width of the widest of many texts, of which only a few are measured.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "common/text.h"

namespace qvx {

// Texts are compared by the sum of their characters' widths, and only those with the largest sums are measured as a
// whole. The result is exact for a few texts, and in fonts whose texts are as wide as their characters together.
class WidestTexts {
  public:
    // Returns the width of a text without line breaks.
    using Measure = std::function<int(TextView text)>;
    explicit WidestTexts(Measure measure) : measure_(std::move(measure)) {}

    void Add(TextView text);
    // The width of the widest text so far; 0 without any.
    int Width() const;

  private:
    static constexpr int notMeasured = -1;
    using Page = std::array<int, 256>;
    struct Candidate {
        std::int64_t sum;
        Text text;
    };

    int WidthOf(char16_t character);

    Measure measure_;
    std::array<std::unique_ptr<Page>, 256> pages_;  // the characters' widths, by their upper byte
    std::vector<Candidate> candidates_;             // a heap with the smallest sum at its front
};

}  // namespace qvx
