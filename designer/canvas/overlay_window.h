// The transparent sheet over a form under design, which takes the mouse in place of the controls.
#pragma once

#include <windows.h>

#include <functional>

#include "common/geometry.h"
#include "designer/document/placement.h"
#include "win/window.h"

namespace qvx::host::designer {

enum class MouseAction { press, doublePress, move, release, menu, cancel };

// A mouse event on the form. `at` is in pixels from the top left of its inside, and may be outside.
struct Mouse {
    MouseAction action = MouseAction::move;
    Point at;
    bool shift = false;
    bool control = false;
    bool alt = false;
    bool held = false;  // the left button
};

constexpr WORD arrowCursor = 32512;  // the system's, by its identifier
// The cursor over a handle; one of the system's, by its identifier.
WORD CursorOf(Grip handle);

void ShowCursorOf(WORD cursor);

// Covers the whole form and takes the mouse. It paints nothing, so that the controls below it are seen.
class OverlayWindow final : public Window {
  public:
    ~OverlayWindow() override { Destroy(); }

    bool Open(HWND form);

    WORD cursor = arrowCursor;
    std::function<void(const Mouse&)> onMouse;
    // Called before a press of either button, so that the canvas gets the keys.
    std::function<void()> onPress;

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    LRESULT Notify(MouseAction action, WPARAM keys, LPARAM place);
};

}  // namespace qvx::host::designer
