#include "designer/canvas/marks.h"

#include <algorithm>

#include "common/number_text.h"
#include "designer/document/placement.h"

namespace qvx::host::design {

std::vector<Mark> SelectionMarks(const Shapes& shapes, const Selection& selection, bool focused, int handleSize) {
    std::vector<Mark> marks;
    for (const Shape& shape : shapes) {
        if (!selection.Has(shape.id)) continue;
        const bool primary = *selection.Primary() == shape.id;
        const Mark::Look look = !focused  ? Mark::Look::weakHandle
                                : primary ? Mark::Look::primaryHandle
                                          : Mark::Look::handle;
        for (int i = 0; i < handleCount; ++i) {
            const auto handle = static_cast<Grip>(i);
            const bool corner = handle == Grip::topLeft || handle == Grip::topRight || handle == Grip::bottomLeft ||
                                handle == Grip::bottomRight;
            if (primary || corner) marks.push_back({look, GripArea(shape.area, handle, handleSize), {}});
        }
    }
    return marks;
}

std::vector<Mark> TabOrderMarks(const Shapes& shapes, const std::vector<ObjectId>& order,
                                const std::vector<ObjectId>& done, Dpi dpi) {
    const auto scaled = [&](int pixels) { return Scaled(pixels, dpi.x); };
    std::vector<Mark> marks;
    for (const Shape& shape : shapes) {
        const bool clicked = std::find(done.begin(), done.end(), shape.id) != done.end();
        const auto number = std::find(order.begin(), order.end(), shape.id) - order.begin();
        const Text text = IntegerToText(static_cast<int>(number));
        const int width = scaled(10 + 8 * static_cast<int>(text.size()));
        const Rect& area = shape.area;
        marks.push_back({clicked ? Mark::Look::doneBadge : Mark::Look::badge,
                         {area.left, area.top, area.left + width, area.top + scaled(18)},
                         text});
    }
    return marks;
}

std::vector<Rect> PartsOf(const std::vector<Mark>& marks, int outlineWidth) {
    std::vector<Rect> parts;
    for (const Mark& mark : marks) {
        if (mark.look != Mark::Look::outline) {
            parts.push_back(mark.area);
            continue;
        }
        const Rect& a = mark.area;
        parts.push_back({a.left, a.top, a.right, a.top + outlineWidth});
        parts.push_back({a.left, a.bottom - outlineWidth, a.right, a.bottom});
        parts.push_back({a.left, a.top + outlineWidth, a.left + outlineWidth, a.bottom - outlineWidth});
        parts.push_back({a.right - outlineWidth, a.top + outlineWidth, a.right, a.bottom - outlineWidth});
    }
    return parts;
}

void PaintMarks(Surface& surface, const std::vector<Mark>& marks) {
    FontSpec font;
    for (const Mark& mark : marks) {
        const bool badge = mark.look == Mark::Look::badge || mark.look == Mark::Look::doneBadge;
        switch (mark.look) {
            case Mark::Look::outline:
                surface.FillRect(mark.area, colors::highlight);
                break;
            case Mark::Look::primaryHandle:
                surface.FillRect(mark.area, colors::highlight);
                surface.FrameRect(mark.area, colors::windowBackground);
                break;
            case Mark::Look::handle:
                surface.FillRect(mark.area, colors::windowBackground);
                surface.FrameRect(mark.area, colors::highlight);
                break;
            case Mark::Look::weakHandle:
                surface.FillRect(mark.area, colors::windowBackground);
                surface.FrameRect(mark.area, colors::grayText);
                break;
            case Mark::Look::badge:
                surface.FillRect(mark.area, colors::highlight);
                break;
            case Mark::Look::doneBadge:
                surface.FillRect(mark.area, colors::windowBackground);
                surface.FrameRect(mark.area, colors::highlight);
                break;
        }
        if (!badge) continue;
        const bool done = mark.look == Mark::Look::doneBadge;
        surface.DrawLabel(mark.text, mark.area, font, done ? colors::highlight : colors::highlightText,
                          text_format::center | text_format::middle | text_format::singleLine);
    }
}

}  // namespace qvx::host::design
