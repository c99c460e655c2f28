// The common implementation of push buttons in a window, whoever owns that window: a control or one of the library's
// dialogs. Each kind of button has its own appearance and reactions. Windows only.
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
    // Whether the button indicates that it opens something.
    virtual bool HasPopup() const { return false; }

    // Sets the window that the button works in; null before there is one and after it is destroyed. Without a window
    // everything works, but nothing is shown.
    void Attach(HWND window);
    HWND WindowHandle() const { return window_; }
    // Sets the size of the face and draws the normal state.
    void Resize(Size pixels);
    // Whether HandleMessage may react to this message, which requires that the button accepts input.
    static bool IsInput(UINT message);
    // Whether a message is handled even if the button does not accept input.
    static bool IsNews(UINT message) { return message == WM_CAPTURECHANGED || message == WM_SHOWWINDOW; }
    // Handles mouse and keyboard messages of the window, and changes of its state; returns nullopt for messages that do
    // not concern the button. Focus messages come through FocusChanged.
    std::optional<LRESULT> HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);
    // The window has got or lost the keyboard focus.
    void FocusChanged(bool focused);
    // Whether the button wants a key before its host moves the focus with it.
    bool Wants(int key, int shift) { return Logic().Wants(key, shift); }

    // Each of these redraws the button in the normal state; colours are repainted in the current state.
    void SetCaption(Text caption);
    void SetFont(FontSpec font);
    // The window takes no input while disabled.
    void SetEnabled(bool enabled);
    void SetForeColor(OleColor color) { SetColor(&PushLook::foreColor, color); }
    void SetBackColor(OleColor color) { SetColor(&PushLook::backColor, color); }
    void SetBorderColor(OleColor color) { SetColor(&PushLook::borderColor, color); }
    void SetFocusRect(bool focusRect);

    void Click() { Perform({ButtonAction::click}); }
    // `key` is the caption's letter pressed with Alt (any other key), or Enter or Esc for a default or cancel button.
    void AccessKeyPress(int key) { Perform(Logic().AccessKeyPress(key)); }

  protected:
    PushElement() = default;
    virtual ~PushElement() = default;

    virtual PushLook& EditLook() = 0;
    virtual PushLogic& Logic() = 0;
    // Performs one of the actions that draw.
    virtual void Draw(ButtonAction action) = 0;
    // Whether the button is its form's active control; used for mouse movements.
    virtual bool Active() const { return false; }
    virtual void ColorChanged() { Repaint(false); }

    void Perform(const ButtonActions& actions);
    // Requests a repaint, or forces it at once.
    void Repaint(bool now);

  private:
    void SetColor(OleColor PushLook::*color, OleColor value);
    void ReleaseMouse();
    bool CursorInside() const;
    bool TakesInput() const { return window_ && Look().enabled && IsWindowVisible(window_); }

    HWND window_ = nullptr;
    bool releasing_ = false;  // the button itself is releasing the mouse capture
    qvx::detail::LifeToken life_;
    ButtonAccessibility accessibility_{*this};
};

}  // namespace qvx::buttons
