// Pictures as hosts hold them, drawn by our surfaces.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include "com/pointer.h"
#include "win/gdi_surface.h"

namespace qvx {

// A host's picture (bitmap, icon or metafile), shared.
class PictureObject final : public GdiPicture {
  public:
    // Any of the picture's interfaces; null is an empty picture.
    explicit PictureObject(IUnknown* picture);

    bool Empty() const { return !picture_; }
    // With a reference for the caller; null when empty.
    IPictureDisp* Get() const;

    Size PixelSize(Dpi dpi) const override;
    void Draw(HDC dc, const Rect& area) const override;

  private:
    ComPtr<IPicture> picture_;
};

}  // namespace qvx
