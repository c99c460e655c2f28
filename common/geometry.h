// Points, sizes and rectangles in device pixels, and the conversion from and to the twips of the control interfaces.
#pragma once

#include <algorithm>
#include <cstdint>

namespace qvx {

struct Point {
    int x = 0;
    int y = 0;
    friend constexpr bool operator==(const Point&, const Point&) = default;
};

struct Size {
    int width = 0;
    int height = 0;
    friend constexpr bool operator==(const Size&, const Size&) = default;
};

// Right and bottom are exclusive, as in the system's own rectangles.
struct Rect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    constexpr int Width() const { return right - left; }
    constexpr int Height() const { return bottom - top; }
    constexpr bool Empty() const { return right <= left || bottom <= top; }
    constexpr bool Contains(Point p) const { return p.x >= left && p.x < right && p.y >= top && p.y < bottom; }
    constexpr Rect Offset(int dx, int dy) const { return {left + dx, top + dy, right + dx, bottom + dy}; }
    constexpr Rect Inflated(int dx, int dy) const { return {left - dx, top - dy, right + dx, bottom + dy}; }
    constexpr Rect Intersect(const Rect& o) const {
        return {std::max(left, o.left), std::max(top, o.top), std::min(right, o.right), std::min(bottom, o.bottom)};
    }
    // The smallest rectangle around both; an empty one is ignored.
    constexpr Rect Union(const Rect& o) const {
        if (Empty() || o.Empty()) return Empty() ? o : *this;
        return {std::min(left, o.left), std::min(top, o.top), std::max(right, o.right), std::max(bottom, o.bottom)};
    }
    friend constexpr bool operator==(const Rect&, const Rect&) = default;
};

// Dots per inch of a device, horizontally and vertically; at 96, one device pixel is 15 twips.
struct Dpi {
    int x = 96;
    int y = 96;
    friend constexpr bool operator==(const Dpi&, const Dpi&) = default;
};

constexpr int twipsPerInch = 1440;

// Twips per pixel, at least 1; 15 at 96 dots per inch. Fractions are truncated, as in the values that hosts' own screen
// objects report.
constexpr int TwipsPerPixel(int dotsPerInch) { return std::max(1, twipsPerInch / dotsPerInch); }

// Returns value * numerator / denominator, rounded half away from zero. Results beyond 32 bits are clamped.
constexpr int ScaleRounded(std::int64_t value, std::int64_t numerator, std::int64_t denominator) {
    const std::int64_t product = value * numerator;
    const std::int64_t half = denominator / 2;
    const std::int64_t scaled = (product >= 0 ? product + half : product - half) / denominator;
    return static_cast<int>(std::clamp<std::int64_t>(scaled, INT32_MIN, INT32_MAX));
}

// Converts a length in pixels at 96 dots per inch to pixels at another resolution.
constexpr int Scaled(int pixels, int dotsPerInch) { return ScaleRounded(pixels, dotsPerInch, 96); }
constexpr int TwipsToPixels(int twips, int dotsPerInch) { return ScaleRounded(twips, dotsPerInch, twipsPerInch); }
constexpr int PixelsToTwips(int pixels, int dotsPerInch) { return ScaleRounded(pixels, twipsPerInch, dotsPerInch); }

constexpr Size TwipsToPixels(Size twips, Dpi dpi) {
    return {TwipsToPixels(twips.width, dpi.x), TwipsToPixels(twips.height, dpi.y)};
}
constexpr Rect TwipsToPixels(const Rect& twips, Dpi dpi) {
    return {TwipsToPixels(twips.left, dpi.x), TwipsToPixels(twips.top, dpi.y), TwipsToPixels(twips.right, dpi.x),
            TwipsToPixels(twips.bottom, dpi.y)};
}

}  // namespace qvx
