// Records drawing calls as lines of text. Metrics are fixed and simple, so that expected layouts can be worked out by
// hand: at 96 dots per inch every character of an 8.25-point font is 6 pixels wide and every line 13 pixels high; other
// sizes and resolutions are in proportion.
#pragma once

#include <string>

#include "drawing/surface.h"

namespace qvx {

class RecordingSurface final : public Surface {
  public:
    explicit RecordingSurface(Dpi dpi = {}) : dpi_(dpi) {}

    // The calls so far, one per line.
    const std::string& Log() const { return log_; }
    void Clear() { log_.clear(); }

    Dpi Resolution() const override { return dpi_; }
    Size MeasureText(TextView text, const FontSpec& font, int wrapWidth, unsigned format) override;
    int LineHeight(const FontSpec& font) override;
    void FillRect(const Rect& area, OleColor color) override;
    void FrameRect(const Rect& area, OleColor color) override;
    void DrawLine(Point from, Point to, OleColor color, int thickness) override;
    void DrawEdge(const Rect& area, unsigned style, unsigned sides) override;
    void DrawFrameControl(const Rect& area, unsigned kind, unsigned state) override;
    void DrawFocusRect(const Rect& area, OleColor color) override;
    void InvertRect(const Rect& area) override;
    void DrawLabel(TextView text, const Rect& area, const FontSpec& font, OleColor color, unsigned format) override;
    void DrawCellText(TextView text, Point origin, const Rect& area, const FontSpec& font, OleColor color,
                      OleColor background) override;
    void DrawPicture(const Picture& picture, const Rect& area) override;
    void FrameRoundRect(const Rect& area, Size corner, OleColor color) override;
    void RoundRect(const Rect& area, Size corner, OleColor color) override;
    void PushClip(const Rect& area) override;
    void PopClip() override;

  private:
    int CharWidth(const FontSpec& font) const;
    void Line(const std::string& text);

    Dpi dpi_;
    std::string log_;
};

}  // namespace qvx
