#include "designer/canvas/drag.h"

#include <cstdlib>

namespace qvx::host::designer {

namespace {
// How far the mouse may move during a click, in pixels at 96 dots per inch.
constexpr int threshold = 3;
}  // namespace

void Drag::Begin(Kind kind, Point at, Point origin, Dpi dpi) {
    kind_ = kind;
    from_ = at_ = at;
    origin_ = origin;
    dpi_ = dpi;
    moved_ = false;
    snap_ = true;
    start_.clear();
}

void Drag::Take(std::vector<TwipsRect> bounds, std::size_t primary, Grip handle) {
    start_ = std::move(bounds);
    primary_ = primary;
    handle_ = handle;
}

bool Drag::MoveTo(Point at, bool snap) {
    at_ = at;
    snap_ = snap;
    const int far = std::max(threshold * dpi_.x / 96, 1);
    if (std::abs(at.x - from_.x) >= far || std::abs(at.y - from_.y) >= far) moved_ = true;
    return moved_;
}

std::vector<TwipsRect> Drag::Bounds(Size usual) const {
    const auto x = [&](int pixel) { return PixelsToTwips(pixel, dpi_.x); };
    const auto y = [&](int pixel) { return PixelsToTwips(pixel, dpi_.y); };
    const int dx = moved_ ? x(at_.x - from_.x) : 0;
    const int dy = moved_ ? y(at_.y - from_.y) : 0;
    switch (kind_) {
        case Kind::none:
            return {};
        case Kind::move:
            return designer::Moved(start_, primary_, dx, dy, snap_);
        case Kind::size: {
            std::vector<TwipsRect> sized;
            for (const TwipsRect& rect : start_) sized.push_back(moved_ ? Sized(rect, handle_, dx, dy, snap_) : rect);
            return sized;
        }
        case Kind::place:
        case Kind::band:
            break;
    }
    const Point from{x(from_.x - origin_.x), y(from_.y - origin_.y)};
    const Point to = moved_ ? Point{x(at_.x - origin_.x), y(at_.y - origin_.y)} : from;
    if (kind_ == Kind::place) return {Drawn(from, to, usual, snap_)};
    return {{std::min(from.x, to.x), std::min(from.y, to.y), std::abs(to.x - from.x), std::abs(to.y - from.y)}};
}

std::vector<Rect> Drag::Outlines(Size usual) const {
    if (kind_ == Kind::band) {
        return {{std::min(from_.x, at_.x), std::min(from_.y, at_.y), std::max(from_.x, at_.x) + 1,
                 std::max(from_.y, at_.y) + 1}};
    }
    std::vector<Rect> outlines;
    for (const TwipsRect& rect : Bounds(usual)) {
        const Rect twips{rect.left, rect.top, rect.left + rect.width, rect.top + rect.height};
        outlines.push_back(TwipsToPixels(twips, dpi_).Offset(origin_.x, origin_.y));
    }
    return outlines;
}

}  // namespace qvx::host::designer
