#include "designer/canvas/adorners.h"

#include <algorithm>

#include "common/number_text.h"
#include "designer/document/placement.h"

namespace qvx::host::designer {

std::vector<Adorner> SelectionAdorners(const Shapes& shapes, const Selection& selection, bool focused, int handleSize) {
    std::vector<Adorner> adorners;
    for (const Shape& shape : shapes) {
        if (!selection.Has(shape.id)) continue;
        const bool primary = *selection.Primary() == shape.id;
        const Adorner::Look look = !focused  ? Adorner::Look::weakHandle
                                   : primary ? Adorner::Look::primaryHandle
                                             : Adorner::Look::handle;
        for (int i = 0; i < handleCount; ++i) {
            const auto handle = static_cast<Grip>(i);
            const bool corner = handle == Grip::topLeft || handle == Grip::topRight || handle == Grip::bottomLeft ||
                                handle == Grip::bottomRight;
            if (primary || corner) adorners.push_back({look, GripArea(shape.area, handle, handleSize), {}});
        }
    }
    return adorners;
}

std::vector<Adorner> TabOrderAdorners(const Shapes& shapes, const std::vector<ObjectId>& order,
                                      const std::vector<ObjectId>& done, Dpi dpi) {
    const auto scaled = [&](int pixels) { return Scaled(pixels, dpi.x); };
    std::vector<Adorner> adorners;
    for (const Shape& shape : shapes) {
        const bool clicked = std::find(done.begin(), done.end(), shape.id) != done.end();
        const auto number = std::find(order.begin(), order.end(), shape.id) - order.begin();
        const Text text = IntegerToText(static_cast<int>(number));
        const int width = scaled(10 + 8 * static_cast<int>(text.size()));
        const Rect& area = shape.area;
        adorners.push_back({clicked ? Adorner::Look::doneBadge : Adorner::Look::badge,
                            {area.left, area.top, area.left + width, area.top + scaled(18)},
                            text});
    }
    return adorners;
}

std::vector<Rect> PartsOf(const std::vector<Adorner>& adorners, int outlineWidth) {
    std::vector<Rect> parts;
    for (const Adorner& adorner : adorners) {
        if (adorner.look != Adorner::Look::outline) {
            parts.push_back(adorner.area);
            continue;
        }
        const Rect& a = adorner.area;
        parts.push_back({a.left, a.top, a.right, a.top + outlineWidth});
        parts.push_back({a.left, a.bottom - outlineWidth, a.right, a.bottom});
        parts.push_back({a.left, a.top + outlineWidth, a.left + outlineWidth, a.bottom - outlineWidth});
        parts.push_back({a.right - outlineWidth, a.top + outlineWidth, a.right, a.bottom - outlineWidth});
    }
    return parts;
}

void PaintAdorners(Surface& surface, const std::vector<Adorner>& adorners) {
    FontSpec font;
    for (const Adorner& adorner : adorners) {
        const bool badge = adorner.look == Adorner::Look::badge || adorner.look == Adorner::Look::doneBadge;
        switch (adorner.look) {
            case Adorner::Look::outline:
                surface.FillRect(adorner.area, colors::highlight);
                break;
            case Adorner::Look::primaryHandle:
                surface.FillRect(adorner.area, colors::highlight);
                surface.FrameRect(adorner.area, colors::windowBackground);
                break;
            case Adorner::Look::handle:
                surface.FillRect(adorner.area, colors::windowBackground);
                surface.FrameRect(adorner.area, colors::highlight);
                break;
            case Adorner::Look::weakHandle:
                surface.FillRect(adorner.area, colors::windowBackground);
                surface.FrameRect(adorner.area, colors::grayText);
                break;
            case Adorner::Look::badge:
                surface.FillRect(adorner.area, colors::highlight);
                break;
            case Adorner::Look::doneBadge:
                surface.FillRect(adorner.area, colors::windowBackground);
                surface.FrameRect(adorner.area, colors::highlight);
                break;
        }
        if (!badge) continue;
        const bool done = adorner.look == Adorner::Look::doneBadge;
        surface.DrawLabel(adorner.text, adorner.area, font, done ? colors::highlight : colors::highlightText,
                          text_format::center | text_format::middle | text_format::singleLine);
    }
}

}  // namespace qvx::host::designer
