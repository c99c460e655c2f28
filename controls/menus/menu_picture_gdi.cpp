#include "controls/menus/menu_picture_gdi.h"

#include <algorithm>
#include <cstdint>

namespace qvx::menus {

namespace {

// A bitmap with 32 bits per pixel to draw on, with rows from the top.
class Canvas {
  public:
    Canvas(HDC reference, Size size) : size_(size), dc_(CreateCompatibleDC(reference)) {
        BITMAPINFO info{};
        info.bmiHeader = {sizeof info.bmiHeader, size.width, -size.height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        void* bits = nullptr;
        bitmap_.Reset(CreateDIBSection(dc_.Get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
        if (!bitmap_) return;
        pixels_ = static_cast<std::uint32_t*>(bits);
        original_ = SelectObject(dc_.Get(), bitmap_.Get());
    }
    ~Canvas() {
        if (original_) SelectObject(dc_.Get(), original_);
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    explicit operator bool() const { return pixels_ != nullptr; }
    HDC Dc() const { return dc_.Get(); }
    std::uint32_t* Pixels() const { return pixels_; }
    std::size_t Count() const { return static_cast<std::size_t>(size_.width) * static_cast<std::size_t>(size_.height); }
    void Draw(const GdiPicture& picture, DWORD ground) const {
        PatBlt(Dc(), 0, 0, size_.width, size_.height, ground);
        picture.Draw(Dc(), {0, 0, size_.width, size_.height});
        GdiFlush();
    }

  private:
    Size size_;
    UniqueMemoryDc dc_;
    UniqueBitmap bitmap_;
    std::uint32_t* pixels_ = nullptr;
    HGDIOBJ original_ = nullptr;
};

// Returns the grey value and opacity of a pixel, multiplied with each other as the system requires, from its colours on
// black and on white.
std::uint32_t Greyed(std::uint32_t onBlack, std::uint32_t onWhite) {
    const auto part = [](std::uint32_t pixel, int shift) { return static_cast<int>(pixel >> shift & 0xFF); };
    const int opacity = std::clamp(255 - (part(onWhite, 8) - part(onBlack, 8)), 0, 255);
    // On black, the colours are already multiplied.
    const int grey = (part(onBlack, 16) * 30 + part(onBlack, 8) * 59 + part(onBlack, 0) * 11) / 100;
    const auto half = [](int value) { return static_cast<std::uint32_t>(value / 2); };
    const std::uint32_t value = half(std::min(grey, opacity));
    return half(opacity) << 24 | value << 16 | value << 8 | value;
}

}  // namespace

bool MenuPicture::Empty() const {
    const Size size = picture_.PixelSize(Dpi{});
    return picture_.Empty() || size.width <= 0 || size.height <= 0;
}

void MenuPicture::Draw(HDC dc, const Rect& area) const {
    const SavedDc saved(dc);
    SetStretchBltMode(dc, HALFTONE);
    SetBrushOrgEx(dc, 0, 0, nullptr);
    picture_.Draw(dc, area);
}

void DisabledMenuPicture::Draw(HDC dc, const Rect& area) const {
    if (area.Empty()) return;
    const Size size{area.Width(), area.Height()};
    const Canvas black(dc, size);
    const Canvas white(dc, size);
    if (!black || !white) return;
    black.Draw(*picture_, BLACKNESS);
    white.Draw(*picture_, WHITENESS);
    for (std::size_t i = 0; i < black.Count(); ++i) {
        black.Pixels()[i] = Greyed(black.Pixels()[i], white.Pixels()[i]);
    }
    const BLENDFUNCTION blend{AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
    AlphaBlend(dc, area.left, area.top, size.width, size.height, black.Dc(), 0, 0, size.width, size.height, blend);
}

}  // namespace qvx::menus
