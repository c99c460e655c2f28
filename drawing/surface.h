// Every drawing call the library makes. The product draws through the system's GDI; tests draw into lines of text, so
// that what a control paints is a golden file a reviewer can read. Coordinates are device pixels of the surface.
#pragma once

#include <cstdint>

#include "common/font_spec.h"
#include "common/geometry.h"
#include "common/ole_color.h"
#include "common/text.h"

namespace qvx {

// The system's own DrawText flags, by value.
namespace text_format {
constexpr unsigned left = 0x0;
constexpr unsigned center = 0x1;
constexpr unsigned right = 0x2;
constexpr unsigned middle = 0x4;  // vertical centre, single lines only
constexpr unsigned bottom = 0x8;
constexpr unsigned wordBreak = 0x10;
constexpr unsigned singleLine = 0x20;
constexpr unsigned noClip = 0x100;
constexpr unsigned calcRect = 0x400;
constexpr unsigned noPrefix = 0x800;  // "&" is an ordinary character
constexpr unsigned editControl = 0x2000;
constexpr unsigned endEllipsis = 0x8000;
constexpr unsigned rightToLeft = 0x20000;
constexpr unsigned hidePrefix = 0x100000;
}  // namespace text_format

// The system's DrawEdge styles, by value.
namespace edge {
constexpr unsigned none = 0;
constexpr unsigned raisedOuter = 1;
constexpr unsigned sunkenOuter = 2;
constexpr unsigned raisedInner = 4;
constexpr unsigned sunkenInner = 8;
constexpr unsigned raised = raisedOuter | raisedInner;
constexpr unsigned sunken = sunkenOuter | sunkenInner;
constexpr unsigned etched = sunkenOuter | raisedInner;
constexpr unsigned allSides = 15;
}  // namespace edge

// The system's DrawFrameControl kinds and states that the library uses, by value.
namespace frame_control {
constexpr unsigned popupMenu = 5;
constexpr unsigned menuArrowDown =
    16;  // DFCS_SCROLLDOWN's bit pattern among menu glyphs, as the button's drop-down uses it
constexpr unsigned inactive = 256;
}  // namespace frame_control

// A picture that a surface can draw; what is behind it is the surface's business.
class Picture {
  public:
    virtual ~Picture() = default;
    // In device pixels at the given resolution.
    virtual Size PixelSize(Dpi dpi) const = 0;
};

class Surface {
  public:
    virtual ~Surface() = default;

    virtual Dpi Resolution() const = 0;

    // Width and height of the text. With wordBreak among the flags lines break at wrapWidth; otherwise wrapWidth is
    // ignored and only line breaks in the text count (unless singleLine).
    virtual Size MeasureText(TextView text, const FontSpec& font, int wrapWidth, unsigned format) = 0;
    // Height of one line, external leading left out.
    virtual int LineHeight(const FontSpec& font) = 0;

    virtual void FillRect(const Rect& area, OleColor color) = 0;
    // One-pixel outline inside the rectangle.
    virtual void FrameRect(const Rect& area, OleColor color) = 0;
    // Solid line of the given thickness in pixels growing right or down; the end point is not drawn. Horizontal or
    // vertical only.
    virtual void DrawLine(Point from, Point to, OleColor color, int thickness) = 0;
    virtual void DrawEdge(const Rect& area, unsigned style, unsigned sides) = 0;
    virtual void DrawFrameControl(const Rect& area, unsigned kind, unsigned state) = 0;
    // Dotted rectangle: half of its dots invert what is there, the others mix it with `color`, which black leaves as it
    // is.
    virtual void DrawFocusRect(const Rect& area, OleColor color) = 0;
    virtual void InvertRect(const Rect& area) = 0;
    // As the system's DrawText does (whose name its headers redefine); transparent background.
    virtual void DrawLabel(TextView text, const Rect& area, const FontSpec& font, OleColor color, unsigned format) = 0;
    // The quick path of table cells: one run of text from `origin`, clipped to `area`, which is filled with
    // `background` first.
    virtual void DrawCellText(TextView text, Point origin, const Rect& area, const FontSpec& font, OleColor color,
                              OleColor background) = 0;
    // Scaled to the area.
    virtual void DrawPicture(const Picture& picture, const Rect& area) = 0;
    // The outline of a rounded rectangle whose corners are quarter ellipses of the given full width and height, one
    // pixel wide.
    virtual void FrameRoundRect(const Rect& area, Size corner, OleColor color) = 0;
    // The same outline as a pen draws it, as the system's own call of that name does: its corners differ by some pixels
    // from those of a region's frame.
    virtual void RoundRect(const Rect& area, Size corner, OleColor color) = 0;

    // Drawing outside the area has no effect until the matching PopClip; clips nest.
    virtual void PushClip(const Rect& area) = 0;
    virtual void PopClip() = 0;
};

// Keeps a clip for the length of a scope.
class ClipScope {
  public:
    ClipScope(Surface& surface, const Rect& area) : surface_(surface) { surface_.PushClip(area); }
    ~ClipScope() { surface_.PopClip(); }
    ClipScope(const ClipScope&) = delete;
    ClipScope& operator=(const ClipScope&) = delete;

  private:
    Surface& surface_;
};

}  // namespace qvx
