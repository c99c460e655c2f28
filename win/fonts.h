// System fonts made from font values, kept while in use and a little longer, so that drawing a table does not make
// and delete a font per cell.
#pragma once

#include <windows.h>

#include <array>
#include <memory>

#include "common/font_spec.h"
#include "common/geometry.h"
#include "common/text.h"
#include "win/handles.h"

namespace qvx {

// One font at one resolution, with the metrics that drawing needs often.
class GdiFont {
  public:
    GdiFont(const FontSpec& value, Dpi dpi);

    HFONT Get() const { return font_.Get(); }
    // Pixels of one line without external leading.
    int LineHeight() const { return lineHeight_; }
    // Width in pixels of a run without line breaks, "&" counting as a character. `dc` may have any font selected.
    int RunWidth(HDC dc, TextView text) const;

  private:
    UniqueFont font_;
    int lineHeight_ = 0;
    // Advance widths of the first 256 characters; unused when the face's runs are not the sum of their characters.
    bool additive_ = false;
    std::array<int, 256> widths_{};
};

using SharedFont = std::shared_ptr<const GdiFont>;

// The font for a value, from the cache when it is there. A face the system lacks is replaced by its nearest; never
// null. A window that is told the font through WM_SETFONT keeps the result for as long as it shows it.
SharedFont AcquireFont(const FontSpec& value, Dpi dpi);

// The value as the system's record, for dialogs and device contexts of that resolution.
LOGFONTW ToLogFont(const FontSpec& value, Dpi dpi);

}  // namespace qvx
