// The push button as a child window, for the library's own dialogs.
#pragma once

#include <functional>

#include "widgets/button/button_element_win32.h"
#include "win/window.h"

namespace qvx::buttons {

class ButtonWindow final : public Window {
  public:
    ~ButtonWindow() override { Destroy(); }

    // Creates the button as a child of `parent`, in its client pixels; it is hidden until shown. Returns false when the
    // system refuses.
    bool Create(HWND parent, int id, const Rect& bounds);

    ButtonElement& Button() { return button_; }
    // Called when the button gets (true) or loses the focus; may be left empty.
    std::function<void(bool)> onFocus;

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void OnGone() override { button_.Attach(nullptr); }

  private:
    void Paint();
    void NotifyFocus(bool focused);

    ButtonElement button_;
};

}  // namespace qvx::buttons
