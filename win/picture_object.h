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
    // Returns the object with a reference for the caller; null when empty.
    IPictureDisp* Get() const;
    // Does the same for a picture of any kind; null for null and for one of another kind.
    static IPictureDisp* Get(const Picture* picture);

    Size PixelSize(Dpi dpi) const override;
    void Draw(HDC dc, const Rect& area) const override;

  private:
    ComPtr<IPicture> picture_;
};

}  // namespace qvx
