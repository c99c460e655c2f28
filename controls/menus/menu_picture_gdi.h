// A host's picture on a menu item, unchanged and in grey.
#pragma once

#include <memory>

#include "win/picture_object.h"

namespace qvx::menus {

// The picture, scaled smoothly to its area.
class MenuPicture final : public GdiPicture {
  public:
    explicit MenuPicture(IUnknown* picture) : picture_(picture) {}

    // Whether there is nothing to show: no picture, or one without an extent.
    bool Empty() const;
    Size PixelSize(Dpi dpi) const override { return picture_.PixelSize(dpi); }
    void Draw(HDC dc, const Rect& area) const override;

  private:
    PictureObject picture_;
};

// The picture in shades of grey, half transparent, for a disabled item.
class DisabledMenuPicture final : public GdiPicture {
  public:
    explicit DisabledMenuPicture(std::shared_ptr<const MenuPicture> picture) : picture_(std::move(picture)) {}

    Size PixelSize(Dpi dpi) const override { return picture_->PixelSize(dpi); }
    void Draw(HDC dc, const Rect& area) const override;

  private:
    std::shared_ptr<const MenuPicture> picture_;
};

}  // namespace qvx::menus
