// The appearance of a flat push button in its three states.
#pragma once

#include "widgets/button/push_look.h"

namespace qvx::buttons {

// Border styles, numbered as in the type library: the border at rest, then the one under the mouse.
enum class Style { flatSimple = 0, flatHeavy = 1, simpleHeavy = 2 };

// All properties that a button's picture depends on, apart from its state.
struct ButtonLook : PushLook {
    Style behavior = Style::simpleHeavy;
    bool dropDown = false;
};

namespace button_state {
constexpr int normal = 0;
constexpr int hot = 1;
constexpr int pressed = 2;  // 2 and above
}  // namespace button_state

// The parts that have been drawn on a button and are still visible. Drawing the normal or the pressed face covers
// everything; the hot border is added to either. A repaint of the window recreates the same picture from these values,
// so no bitmap has to be kept.
class ButtonImage {
  public:
    // Records a call of DrawButton with that state; states below 0 draw nothing.
    void Draw(int state, bool focused);
    // Records a call of DrawFocus.
    void DrawFocus() { focus_ = true; }

    void Paint(Surface& surface, const ButtonLook& look) const;

  private:
    bool pressed_ = false;
    bool hot_ = false;
    bool focus_ = false;
};

// Draws the whole face for the normal (0) and pressed (2 and above) states; for the hot state (1), draws the raised
// border that is added to either. `focused` adds the focus rectangle to the two faces.
void DrawButton(Surface& surface, const ButtonLook& look, int state, bool focused);

// Draws the dotted rectangle inside the border; nothing unless the button is enabled and has FocusRect set.
void DrawFocus(Surface& surface, const ButtonLook& look);

}  // namespace qvx::buttons
