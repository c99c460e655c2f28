// The font metrics that the grid needs for its layout. A window provides those of its device; without a window, the
// fixed metrics below are used, so that a grid can be laid out headless.
#pragma once

#include <cmath>

#include "common/font_spec.h"
#include "common/geometry.h"
#include "common/text.h"

namespace qvx::flexgrid {

class TextMetrics {
  public:
    virtual ~TextMetrics() = default;
    virtual Dpi Resolution() const = 0;
    // Returns the width of one line of text in device pixels; trailing blanks count.
    virtual int TextWidth(TextView text, const FontSpec& font) const = 0;
    // Returns the height of one line in device pixels, without external leading.
    virtual int LineHeight(const FontSpec& font) const = 0;
};

// Every character is 6 pixels wide and a line is 13 pixels high at 8.25 points and 96 dots per inch, in proportion at
// other sizes.
class FixedTextMetrics final : public TextMetrics {
  public:
    explicit FixedTextMetrics(Dpi dpi = {}) : dpi_(dpi) {}
    static const FixedTextMetrics& Default() {
        static const FixedTextMetrics metrics;
        return metrics;
    }
    Dpi Resolution() const override { return dpi_; }
    int TextWidth(TextView text, const FontSpec& font) const override {
        return static_cast<int>(std::lround(static_cast<double>(text.size()) * 6 * Scale(font, dpi_.x)));
    }
    int LineHeight(const FontSpec& font) const override {
        return static_cast<int>(std::lround(13 * Scale(font, dpi_.y)));
    }

  private:
    static double Scale(const FontSpec& font, int dpi) { return font.points / 8.25 * dpi / 96; }
    Dpi dpi_;
};

// The space between a cell's text and its edges, in pixels at 96 dots per inch: `cellMarginAcross` on each side,
// `cellSpaceDown` in total. A row of one line needs the height of the line and `cellSpaceDown`.
constexpr int cellMarginAcross = 3;
constexpr int cellSpaceDown = 3;

}  // namespace qvx::flexgrid
