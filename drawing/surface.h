// The interface of every drawing call that the library makes. The product draws through the system's GDI; tests record
// lines of text, so that what a control paints is a golden file that a reviewer can read. Coordinates are device pixels
// of the surface.
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
constexpr unsigned scroll = 3;
constexpr unsigned popupMenu = 5;
constexpr unsigned themedCombo =
    100;                            // the library's own kind: in the system's visual style, with the states of `scroll`
constexpr unsigned comboArrow = 5;  // of kind `scroll`
constexpr unsigned menuArrowDown =
    16;  // DFCS_SCROLLDOWN's bit pattern among menu glyphs, as the button's drop-down uses it
constexpr unsigned inactive = 256;
constexpr unsigned pushed = 512;
}  // namespace frame_control

// A picture that a surface can draw; each kind of surface has its own implementation.
class Picture {
  public:
    virtual ~Picture() = default;
    // The size in device pixels at the given resolution.
    virtual Size PixelSize(Dpi dpi) const = 0;
};

class Surface {
  public:
    virtual ~Surface() = default;

    // The resolution of the target.
    virtual Dpi Resolution() const = 0;

    // Returns width and height of the text. With wordBreak among the flags, lines break at wrapWidth; otherwise
    // wrapWidth is ignored and only line breaks in the text count (unless singleLine is set).
    virtual Size MeasureText(TextView text, const FontSpec& font, int wrapWidth, unsigned format) = 0;
    // The height of one line without external leading.
    virtual int LineHeight(const FontSpec& font) = 0;

    virtual void FillRect(const Rect& area, OleColor color) = 0;
    // Draws a one-pixel outline inside the rectangle.
    virtual void FrameRect(const Rect& area, OleColor color) = 0;
    // Draws a solid horizontal or vertical line; its thickness in pixels extends to the right or down, and the end
    // point is not drawn.
    virtual void DrawLine(Point from, Point to, OleColor color, int thickness) = 0;
    // Draws as the system's calls of these names do; see the constants above.
    virtual void DrawEdge(const Rect& area, unsigned style, unsigned sides) = 0;
    virtual void DrawFrameControl(const Rect& area, unsigned kind, unsigned state) = 0;
    // Draws a dotted rectangle: half of its dots invert what is there, the others mix it with `color`; black leaves the
    // latter unchanged.
    virtual void DrawFocusRect(const Rect& area, OleColor color) = 0;
    virtual void InvertRect(const Rect& area) = 0;
    // Draws as the system's DrawText does, with a transparent background. The system's headers redefine that name.
    virtual void DrawLabel(TextView text, const Rect& area, const FontSpec& font, OleColor color, unsigned format) = 0;
    // The fast path for table cells: fills `area` with `background` and draws one run of text from `origin`, clipped to
    // it.
    virtual void DrawCellText(TextView text, Point origin, const Rect& area, const FontSpec& font, OleColor color,
                              OleColor background) = 0;
    // Scales the picture to the area.
    virtual void DrawPicture(const Picture& picture, const Rect& area) = 0;
    // Draws the outline, one pixel wide, of a rounded rectangle whose corners are quarter ellipses of the given full
    // width and height.
    virtual void FrameRoundRect(const Rect& area, Size corner, OleColor color) = 0;
    // Draws the same outline as a pen does, like the system's call of that name: its corners differ by some pixels from
    // those of a region's frame.
    virtual void RoundRect(const Rect& area, Size corner, OleColor color) = 0;

    // Drawing outside the area has no effect until the matching PopClip; clips nest.
    virtual void PushClip(const Rect& area) = 0;
    virtual void PopClip() = 0;
};

// Applies a clip for the duration of a scope.
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
