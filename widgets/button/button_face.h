// What a flat push button looks like, in three states.
#pragma once

#include "widgets/button/push_look.h"

namespace qvx::buttons {

// Border styles, numbered as in the type library: the border at rest, then the one under the mouse.
enum class Style { flatSimple = 0, flatHeavy = 1, simpleHeavy = 2 };

// Everything a button's picture depends on but its state.
struct ButtonLook : PushLook {
    Style behavior = Style::simpleHeavy;
    bool dropDown = false;
};

namespace button_state {
constexpr int normal = 0;
constexpr int hot = 1;
constexpr int pressed = 2;  // and everything above
}  // namespace button_state

// What has been drawn on a button and is still there. Drawing the normal or the pressed face covers everything; the
// hot border comes on top of either. Whoever paints the window again gets the same picture from these values, so no
// bitmap has to be kept.
class ButtonImage {
  public:
    // Takes in a call of DrawButton with that state; states below 0 draw nothing.
    void Draw(int state, bool focused);
    // Takes in a call of DrawFocus.
    void DrawFocus() { focus_ = true; }

    void Paint(Surface& surface, const ButtonLook& look) const;

  private:
    bool pressed_ = false;
    bool hot_ = false;
    bool focus_ = false;
};

// The normal (0) and pressed (2 and above) face in full, and for the hot state (1) the raised border that goes over
// either. `focused` adds the focus rectangle to the two faces.
void DrawButton(Surface& surface, const ButtonLook& look, int state, bool focused);

// The dotted rectangle inside the border; nothing unless the button is enabled and has FocusRect set.
void DrawFocus(Surface& surface, const ButtonLook& look);

}  // namespace qvx::buttons
