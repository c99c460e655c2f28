// The size of a control in two units. A container that has set one of them reads the same size again, not one that has
// been rounded to the other unit.
#pragma once

#include "win/extent.h"

namespace qvx {

class ControlExtent {
  public:
    // In 1/100 millimetre.
    const SIZEL& Himetric() const { return himetric_; }
    const Size& Pixels() const { return pixels_; }
    // Whether the control has not been given a size yet.
    bool Unset() const { return himetric_.cx == 0 && himetric_.cy == 0; }

    // Takes over what the container sets; the pixels stay, for a control whose window it places itself.
    void SetHimetric(const SIZEL& extent) { himetric_ = extent; }
    // The pixels that follow at a resolution.
    void FollowHimetric(Dpi dpi) { pixels_ = HimetricToPixels(himetric_, dpi); }
    void SetPixels(Size pixels, Dpi dpi) {
        pixels_ = pixels;
        if (HimetricToPixels(himetric_, dpi) != pixels) himetric_ = PixelsToHimetric(pixels, dpi);
    }
    // Like SetPixels, for a size that the control chooses: what it does not change stays exactly as it was.
    void ChangePixels(Size pixels, Dpi dpi) {
        const SIZEL himetric = PixelsToHimetric(pixels, dpi);
        if (pixels.width != pixels_.width) himetric_.cx = himetric.cx;
        if (pixels.height != pixels_.height) himetric_.cy = himetric.cy;
        pixels_ = pixels;
    }

  private:
    SIZEL himetric_{};
    Size pixels_;
};

}  // namespace qvx
