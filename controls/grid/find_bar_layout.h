// The find bar at the bottom of a grid: where its fields are, and what it says about the hits.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "common/geometry.h"
#include "common/text.h"
#include "controls/grid/replace_cells.h"

namespace qvx::grid {

// In the order of the Tab key, apart from the labels.
enum class BarPart {
    TextLabel,
    Text,
    Previous,
    Next,
    MatchCase,
    WholeCell,
    InColumn,
    Count,
    WithLabel,
    With,
    Replace,
    ReplaceAll,
    Close,
};
constexpr std::size_t barParts = 13;

// A value for each part of the bar.
template <class T>
class PerBarPart {
  public:
    T& operator[](BarPart part) { return values_[static_cast<std::size_t>(part)]; }
    const T& operator[](BarPart part) const { return values_[static_cast<std::size_t>(part)]; }

  private:
    std::array<T, barParts> values_{};
};

// Whether a part is only there for replacing.
bool IsForReplacing(BarPart part);

struct BarMeasures {
    PerBarPart<int> textWidths;  // of the captions, in pixels
    int lineHeight = 0;          // of the font
    int checkWidth = 0;          // of a check box without its caption
    Dpi dpi;
    bool replaces = false;  // whether the parts for replacing are shown
};

struct BarLayout {
    PerBarPart<Rect> places;  // empty for parts that are not shown
    int height = 0;           // of the bar
};

// Lays out the bar in a width in pixels; parts that do not fit continue on another line.
BarLayout LayOutBar(const BarMeasures& measures, int width);

struct HitStatus {
    bool searching = false;   // there is a text to be searched
    bool complete = true;     // all hits have been counted
    std::int64_t number = 0;  // of the hit at the cursor, from 1; 0 where there is none
    std::int64_t total = 0;
};
// Returns what the bar says about the hits: "3 of 1,204".
Text HitText(const HitStatus& status);
// Appends a number with commas between its thousands.
void AppendNumber(Text& text, std::int64_t number);
// Returns what it says after replacing: "12 replaced, 3 refused".
Text ReplacedText(const Replacements& done);

}  // namespace qvx::grid
