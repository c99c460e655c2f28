#include "widgets/button/button_face.h"

namespace qvx::buttons {

namespace {

// Distances at 96 dots per inch.
constexpr int arrowStripLeft = 15;
constexpr int arrowStripRight = 2;
constexpr int focusInset = 3;

void DrawArrow(Surface& surface, const Rect& area, unsigned state) {
    const int dpi = surface.Resolution().x;
    const Rect strip{area.right - Scaled(arrowStripLeft, dpi), area.top, area.right - Scaled(arrowStripRight, dpi),
                     area.bottom};
    surface.DrawFrameControl(strip, frame_control::popupMenu, state);
}

void DrawNormal(Surface& surface, const ButtonLook& look) {
    surface.FillRect(look.face, look.backColor);
    if (look.enabled) {
        DrawCaption(surface, look, look.face, look.foreColor);
    } else {
        DrawCaption(surface, look, look.face.Offset(1, 1), colors::buttonHighlight);
        DrawCaption(surface, look, look.face, colors::buttonShadow);
    }
    if (look.dropDown) {
        DrawArrow(surface, look.face,
                  look.enabled ? frame_control::menuArrowDown : frame_control::menuArrowDown | frame_control::inactive);
    }
    if (look.behavior == Style::simpleHeavy) {
        surface.DrawEdge(look.face, edge::raisedInner, edge::allSides);
    } else {
        surface.FrameRect(look.face, look.borderColor);
    }
}

void DrawPressed(Surface& surface, const ButtonLook& look) {
    surface.FillRect(look.face, look.backColor);
    const Rect moved = look.face.Offset(1, 1);
    DrawCaption(surface, look, moved, look.foreColor);
    if (look.dropDown) {
        DrawArrow(surface, moved, frame_control::menuArrowDown);
    }
    surface.DrawEdge(look.face, edge::sunkenOuter, edge::allSides);
}

}  // namespace

void DrawFocus(Surface& surface, const ButtonLook& look) {
    if (!look.focusRect || !look.enabled) {
        return;
    }
    const Dpi dpi = surface.Resolution();
    const Rect area = look.face.Inflated(-Scaled(focusInset, dpi.x), -Scaled(focusInset, dpi.y));
    if (!area.Empty()) {
        surface.DrawFocusRect(area, Rgb(0, 0, 0));
    }
}

void DrawButton(Surface& surface, const ButtonLook& look, int state, bool focused) {
    if (state == button_state::hot) {
        const unsigned raise = look.behavior == Style::flatSimple ? edge::raisedInner : edge::raised;
        surface.DrawEdge(look.face, raise, edge::allSides);
        return;
    }
    if (state < button_state::normal) {
        return;
    }
    if (state == button_state::normal) {
        DrawNormal(surface, look);
    } else {
        DrawPressed(surface, look);
    }
    if (focused) {
        DrawFocus(surface, look);
    }
}

void ButtonImage::Draw(int state, bool focused) {
    if (state < button_state::normal) {
        return;
    }
    if (state == button_state::hot) {
        hot_ = true;
        return;
    }
    pressed_ = state >= button_state::pressed;
    hot_ = false;
    focus_ = focused;
}

void ButtonImage::Paint(Surface& surface, const ButtonLook& look) const {
    DrawButton(surface, look, pressed_ ? button_state::pressed : button_state::normal, focus_);
    if (hot_) {
        DrawButton(surface, look, button_state::hot, focus_);
    }
}

}  // namespace qvx::buttons
