// System fonts created from font values. They are kept while in use and a little longer, so that drawing a table does
// not create and delete a font for every cell.
#pragma once

#include <windows.h>

#include <array>
#include <memory>

#include "common/font_spec.h"
#include "common/geometry.h"
#include "common/text.h"
#include "win/handles.h"

namespace qvx {

// One font at one resolution, with the metrics that drawing often needs.
class GdiFont {
  public:
    GdiFont(const FontSpec& value, Dpi dpi);

    HFONT Get() const { return font_.Get(); }
    // The height of one line in pixels, without external leading.
    int LineHeight() const { return lineHeight_; }
    // The width in pixels of a run without line breaks, in which "&" is an ordinary character. `dc` may have any font
    // selected.
    int RunWidth(HDC dc, TextView text) const;

  private:
    UniqueFont font_;
    int lineHeight_ = 0;
    // Advance widths of the first 256 characters; not used when the width of a run is not the sum of its characters'
    // widths.
    bool additive_ = false;
    std::array<int, 256> widths_{};
};

using SharedFont = std::shared_ptr<const GdiFont>;

// Returns the font for a value, from the cache if possible; never null. The system replaces a face that it lacks by the
// nearest one. A window that gets the font through WM_SETFONT keeps the result for as long as it shows it.
SharedFont AcquireFont(const FontSpec& value, Dpi dpi);

// Converts the value to the system's structure, for dialogs and device contexts of that resolution.
LOGFONTW ToLogFont(const FontSpec& value, Dpi dpi);

}  // namespace qvx
