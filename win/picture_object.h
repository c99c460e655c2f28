// Pictures of hosts, which the library's surfaces draw.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include "com/pointer.h"
#include "win/gdi_surface.h"

namespace qvx {

// A host's picture object (bitmap, icon or metafile), shared.
class PictureObject final : public GdiPicture {
  public:
    // Accepts any of the picture's interfaces; null gives an empty picture.
    explicit PictureObject(IUnknown* picture);

    bool Empty() const { return !picture_; }

    Size PixelSize(Dpi dpi) const override;
    void Draw(HDC dc, const Rect& area) const override;
    IPictureDisp* Object() const override;

  private:
    ComPtr<IPicture> picture_;
};

}  // namespace qvx
