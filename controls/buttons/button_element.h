// The working parts of a push button in a window, whoever owns that window: the Button control or one of the library's
// dialogs. Windows only.
#pragma once

#include <windows.h>

#include <functional>
#include <optional>

#include "controls/buttons/button_accessible_object.h"
#include "controls/buttons/button_face.h"
#include "controls/buttons/button_logic.h"
#include "win/window.h"

namespace qvx::buttons {

class ButtonElement {
  public:
    // Called for a click by mouse, Space, access key or `Value`; it may destroy the button.
    std::function<void()> onClick;

    ButtonElement() = default;
    ButtonElement(const ButtonElement&) = delete;
    ButtonElement& operator=(const ButtonElement&) = delete;

    // The window it works in; null before there is one and after it is gone. Everything works without a window too, but
    // shows nothing.
    void Attach(HWND window);
    HWND WindowHandle() const { return window_; }
    void Resize(Size pixels);
    void Paint(Surface& surface) const { image_.Paint(surface, look_); }
    // Whether HandleMessage may have something to do for a message, and the button then has to be one that takes input.
    static bool IsInput(UINT message);
    // Mouse and keyboard messages of the window; nothing for those that are not the button's. Focus messages come
    // through FocusChanged. WM_CAPTURECHANGED belongs here whether or not the button takes input.
    std::optional<LRESULT> HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);
    void FocusChanged(bool focused);

    const ButtonLook& Look() const { return look_; }
    // Caption and font draw the button in its normal state; everything else repaints what it shows.
    void SetCaption(Text caption);
    void SetFont(FontSpec font);
    void SetForeColor(OleColor color);
    void SetBackColor(OleColor color);
    void SetBorderColor(OleColor color);
    void SetBehavior(Style behavior);
    void SetDropDown(bool dropDown);
    void SetFocusRect(bool focusRect);
    // The window takes no input while disabled.
    void SetEnabled(bool enabled);

    // How it shows itself, whatever window really has the focus.
    bool Focused() const { return logic_.Focused(); }
    void SetFocused(bool focused);
    // True clicks the button once.
    void SetValue(bool value);
    // Paints one of the three states, now.
    void DrawButton(int state);
    void DrawFocus();
    // Alt with the caption's letter (any other key), or Enter or Esc for a default or cancel button.
    void AccessKeyPress(int key);
    bool AnswersTo(char16_t character) const;

  private:
    void Repaint(bool now);
    void Perform(const ButtonActions& actions);
    void ReleaseMouse();
    bool CursorInside() const;
    bool TakesInput() const { return window_ && look_.enabled && IsWindowVisible(window_); }

    HWND window_ = nullptr;
    ButtonLook look_;
    ButtonLogic logic_;
    ButtonImage image_;
    bool releasing_ = false;  // the mouse is let go by the button itself
    qvx::detail::LifeToken life_;
    ButtonAccessibility accessibility_{*this};
};

}  // namespace qvx::buttons
