// The working parts that push buttons share in a window, whoever owns that window: a control or one of the library's
// dialogs. What a button looks like and how it answers is its own. Windows only.
#pragma once

#include <windows.h>

#include <functional>
#include <optional>

#include "widgets/button/button_accessible_object.h"
#include "widgets/button/push_logic.h"
#include "widgets/button/push_look.h"
#include "win/window.h"

namespace qvx::buttons {

class PushElement {
  public:
    // Called for a click by mouse, keyboard, access key or `Value`; it may destroy the button.
    std::function<void()> onClick;

    PushElement(const PushElement&) = delete;
    PushElement& operator=(const PushElement&) = delete;

    virtual const PushLook& Look() const = 0;
    virtual void Paint(Surface& surface) const = 0;
    // Whether it shows that something opens from it.
    virtual bool HasPopup() const { return false; }

    // The window it works in; null before there is one and after it is gone. Everything works without a window too, but
    // shows nothing.
    void Attach(HWND window);
    HWND WindowHandle() const { return window_; }
    void Resize(Size pixels);
    // Whether HandleMessage may have something to do for a message, and the button then has to be one that takes input.
    static bool IsInput(UINT message);
    // Whether a message belongs here whether or not the button takes input.
    static bool IsNews(UINT message) { return message == WM_CAPTURECHANGED || message == WM_SHOWWINDOW; }
    // Mouse and keyboard messages of the window, and news of it; nothing for those that are not the button's. Focus
    // messages come through FocusChanged.
    std::optional<LRESULT> HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);
    void FocusChanged(bool focused);
    // Keys that the button wants before its host moves the focus by them.
    bool Wants(int key, int shift) { return Logic().Wants(key, shift); }

    // The normal state is drawn anew with each of these; colours are repainted in the state that shows.
    void SetCaption(Text caption);
    void SetFont(FontSpec font);
    // The window takes no input while disabled.
    void SetEnabled(bool enabled);
    void SetForeColor(OleColor color) { SetColor(&PushLook::foreColor, color); }
    void SetBackColor(OleColor color) { SetColor(&PushLook::backColor, color); }
    void SetBorderColor(OleColor color) { SetColor(&PushLook::borderColor, color); }
    void SetFocusRect(bool focusRect);

    void Click() { Perform({ButtonAction::click}); }
    // Alt with the caption's letter (any other key), or Enter or Esc for a default or cancel button.
    void AccessKeyPress(int key) { Perform(Logic().AccessKeyPress(key)); }

  protected:
    PushElement() = default;
    virtual ~PushElement() = default;

    virtual PushLook& EditLook() = 0;
    virtual PushLogic& Logic() = 0;
    // For one of the actions that draw.
    virtual void Draw(ButtonAction action) = 0;
    // Whether the button is its form's active control, for movements of the mouse.
    virtual bool Active() const { return false; }
    virtual void ColorChanged() { Repaint(false); }

    void Perform(const ButtonActions& actions);
    // Asks for a repaint, or makes it be done at once.
    void Repaint(bool now);

  private:
    void SetColor(OleColor PushLook::*color, OleColor value);
    void ReleaseMouse();
    bool CursorInside() const;
    bool TakesInput() const { return window_ && Look().enabled && IsWindowVisible(window_); }

    HWND window_ = nullptr;
    bool releasing_ = false;  // the mouse is let go by the button itself
    qvx::detail::LifeToken life_;
    ButtonAccessibility accessibility_{*this};
};

}  // namespace qvx::buttons
