#include "designer/canvas/canvas_keys.h"

#include "common/keys.h"

namespace qvx::host::designer {

CanvasAction CanvasActionOf(int key, int shift, const CanvasKeyState& state) {
    switch (key) {
        case keys::left:
        case keys::right:
        case keys::up:
        case keys::down:
            return state.selected && !state.dragging ? CanvasAction::nudge : CanvasAction::idle;
        case keys::tab:
            if (shift & ~keys::shiftMask) return CanvasAction::none;
            return shift ? CanvasAction::selectPrevious : CanvasAction::selectNext;
        case keys::escape:
            return state.dragging     ? CanvasAction::cancelDrag
                   : state.armed      ? CanvasAction::disarm
                   : state.ordersTabs ? CanvasAction::endTabOrder
                   : state.selected   ? CanvasAction::selectContainer
                                      : CanvasAction::idle;
        case keys::enter:
            return state.armed      ? CanvasAction::placeTool
                   : state.selected ? CanvasAction::showPages
                                    : CanvasAction::idle;
        default:
            return CanvasAction::none;
    }
}

Nudge NudgeOf(int key, int shift, Dpi dpi) {
    Nudge nudge;
    nudge.fine = (shift & keys::controlMask) != 0;
    nudge.sizes = (shift & keys::shiftMask) != 0;
    const int across = key == keys::left ? -1 : key == keys::right ? 1 : 0;
    const int down = key == keys::up ? -1 : key == keys::down ? 1 : 0;
    nudge.dx = across * (nudge.fine ? TwipsPerPixel(dpi.x) : gridStep);
    nudge.dy = down * (nudge.fine ? TwipsPerPixel(dpi.y) : gridStep);
    return nudge;
}

std::vector<TwipsRect> Nudged(const std::vector<TwipsRect>& bounds, const Nudge& nudge) {
    if (bounds.empty()) return {};
    if (!nudge.sizes) return Moved(bounds, bounds.size() - 1, nudge.dx, nudge.dy, !nudge.fine);
    std::vector<TwipsRect> sized;
    for (const TwipsRect& rect : bounds) {
        TwipsRect next = Sized(rect, Grip::bottomRight, nudge.dx, nudge.dy, !nudge.fine);
        // The other direction stays as it is, on the grid or off it.
        if (nudge.dx == 0) next.width = rect.width;
        if (nudge.dy == 0) next.height = rect.height;
        sized.push_back(next);
    }
    return sized;
}

}  // namespace qvx::host::designer
