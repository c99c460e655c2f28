// The drawing interface, implemented with a system device context.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <optional>
#include <vector>

#include "drawing/surface.h"
#include "win/fonts.h"
#include "win/handles.h"

namespace qvx {

// Returns the colour as the system draws it: system colours are looked up, palette bits dropped.
COLORREF ResolveColor(OleColor color);

inline RECT ToRECT(const Rect& r) { return {r.left, r.top, r.right, r.bottom}; }
inline Rect FromRECT(const RECT& r) {
    return {static_cast<int>(r.left), static_cast<int>(r.top), static_cast<int>(r.right), static_cast<int>(r.bottom)};
}

// A picture that GDI can draw. Every picture on Windows is one, since nothing else draws there.
class GdiPicture : public Picture {
  public:
    static const GdiPicture& Of(const Picture& picture) { return static_cast<const GdiPicture&>(picture); }

    // Draws the picture scaled to the area; parts of the picture may be transparent.
    virtual void Draw(HDC dc, const Rect& area) const = 0;
    // Returns the host's object for the picture with a reference for the caller; null for none.
    virtual IPictureDisp* Object() const { return nullptr; }
};

// Draws on a device context that it does not own, and restores it at the end. Between calls, it keeps the last font and
// colours selected; code that changes them on the same device context meanwhile must call Forget.
class GdiSurface final : public Surface {
  public:
    // `dpi` is the resolution of the target. With `asOnScreen`, texts are as wide as on a screen of that resolution,
    // whatever the font of the target is: it may be a printer whose device context is scaled.
    GdiSurface(HDC dc, Dpi dpi, bool asOnScreen = false);
    ~GdiSurface() override;
    GdiSurface(const GdiSurface&) = delete;
    GdiSurface& operator=(const GdiSurface&) = delete;

    HDC Dc() const { return dc_; }
    // Drops what is known of the device context's selected font and colours.
    void Forget();

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
    const GdiFont& Font(const FontSpec& font);
    const GdiFont& SelectFont(const FontSpec& font);
    void SetColors(OleColor text, OleColor background);
    void SetBackground(OleColor background);
    void SetTextColor(OleColor text);
    // Where texts are measured.
    HDC Ruler() const { return ruler_ ? ruler_.Get() : dc_; }

    HDC dc_;
    // For a device context whose font metrics are missing, as in an old metafile, or not to be used; else null.
    UniqueMemoryDc ruler_;
    std::vector<INT> places_;  // the widths of a text's characters as measured
    Dpi dpi_;
    int savedState_;
    // A region is in pixels of the device, which a metafile does not know yet: its clips are saved with its state.
    bool metafile_ = false;
    // The last font that was used, and whether it is still selected.
    FontSpec fontSpec_;
    SharedFont font_;
    bool fontSelected_ = false;
    // The selected colours as they were passed, since looking up a system colour takes longer than comparing it.
    std::optional<OleColor> textColor_;
    std::optional<OleColor> backColor_;
    // Regions to restore; an empty owner means no clip.
    std::vector<UniqueRegion> clips_;
};

// A bitmap to paint on. It is reused while the requested sizes do not exceed its own.
class BackBuffer {
  public:
    ~BackBuffer();
    BackBuffer() = default;
    BackBuffer(const BackBuffer&) = delete;
    BackBuffer& operator=(const BackBuffer&) = delete;

    // Provides a bitmap of at least `size` pixels in the format of `reference`. Returns the device context to draw on,
    // or null when the system has no memory for it. Sets `fresh` to true when old contents were lost.
    HDC Prepare(HDC reference, Size size, bool* fresh = nullptr);
    HDC Dc() const { return dc_.Get(); }
    // Copies an area to the same position in another device context.
    void CopyTo(HDC target, const Rect& area) const;
    // Moves the contents of `area` by (dx, dy); what is moved out is lost, and the uncovered part keeps its old
    // contents.
    void Scroll(const Rect& area, int dx, int dy) const;
    // Gives up ownership of the bitmap, which is at least as large as requested, and becomes empty.
    UniqueBitmap TakeBitmap();
    void Release();

  private:
    UniqueMemoryDc dc_;
    UniqueBitmap bitmap_;
    HGDIOBJ original_ = nullptr;
    Size size_;
};

// Handles WM_PAINT: drawing goes to a buffer, which is copied to the window at the end in one step, so that nothing
// flickers. Where the system has no memory for a buffer, drawing goes directly to the window.
class BufferedPaint {
  public:
    // `size` is the client area's, in pixels; {} uses an existing buffer as it is.
    BufferedPaint(HWND window, Dpi dpi, BackBuffer& buffer, Size size);
    ~BufferedPaint();
    BufferedPaint(const BufferedPaint&) = delete;
    BufferedPaint& operator=(const BufferedPaint&) = delete;

    GdiSurface& Surface() { return *surface_; }
    // The area that the system wants to be painted.
    Rect UpdateArea() const { return FromRECT(paint_.Area()); }
    bool Buffered() const { return buffer_.Dc() != nullptr; }
    // Whether nothing that was drawn before is left.
    bool Fresh() const { return fresh_; }

  private:
    PaintScope paint_;
    BackBuffer& buffer_;
    bool fresh_ = true;
    std::optional<GdiSurface> surface_;
};

}  // namespace qvx
