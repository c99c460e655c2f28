// What the grid must know about fonts to size itself. The window answers from its device; without a window the fixed
// answers below stand in, so that a grid can be laid out headless.
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
    // Width of one line of text in device pixels; trailing blanks count.
    virtual int TextWidth(TextView text, const FontSpec& font) const = 0;
    // Height of one line in device pixels, external leading left out.
    virtual int LineHeight(const FontSpec& font) const = 0;
};

// Every character 6 pixels wide and a line 13 high at 8.25 points and 96 dots per inch, in proportion at other sizes.
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

// Space between a cell's text and its edges, in pixels at 96 dots per inch: on each side across, in all down. A row of
// one line needs the line and `cellSpaceDown`.
constexpr int cellMarginAcross = 3;
constexpr int cellSpaceDown = 3;

}  // namespace qvx::flexgrid
