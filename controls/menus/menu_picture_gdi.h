// A host's picture on a menu item, as it is and greyed.
#pragma once

#include <memory>

#include "win/picture_object.h"

namespace qvx::menus {

// Scaled smoothly to whatever place it gets.
class MenuPicture final : public GdiPicture {
  public:
    explicit MenuPicture(IUnknown* picture) : picture_(picture) {}

    // Nothing to show: no picture, or one without an extent.
    bool Empty() const;
    Size PixelSize(Dpi dpi) const override { return picture_.PixelSize(dpi); }
    void Draw(HDC dc, const Rect& area) const override;

  private:
    PictureObject picture_;
};

// The same in shades of grey, half transparent, for a disabled item.
class DisabledMenuPicture final : public GdiPicture {
  public:
    explicit DisabledMenuPicture(std::shared_ptr<const MenuPicture> picture) : picture_(std::move(picture)) {}

    Size PixelSize(Dpi dpi) const override { return picture_->PixelSize(dpi); }
    void Draw(HDC dc, const Rect& area) const override;

  private:
    std::shared_ptr<const MenuPicture> picture_;
};

}  // namespace qvx::menus
