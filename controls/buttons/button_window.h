// The push button as a window: what the Button control shows and what the library's own dialogs use.
#pragma once

#include <functional>

#include "controls/buttons/button_face.h"
#include "controls/buttons/button_logic.h"
#include "win/window.h"

namespace qvx::buttons {

class ButtonWindow final : public Window {
  public:
    // A child of `parent`, in its client pixels; hidden until shown. False when the system refuses.
    bool Create(HWND parent, int id, const Rect& bounds);

    // Called for a click by mouse, Space, access key or `Value`; it may destroy the button.
    std::function<void()> onClick;
    // The focus came (true) or went; may be left empty.
    std::function<void(bool)> onFocus;
    // Free for the owner.
    Text tag;

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
    bool Enabled() const { return look_.enabled; }
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
    // The window's own device context; it belongs to the window.
    HDC OwnDc() const { return dc_; }
    const ButtonImage& Image() const { return image_; }

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    void Paint();
    void Resize();
    void Perform(const ButtonActions& actions);
    void ReleaseMouse();
    bool CursorInside() const;
    void TellFocus(bool focused) const;

    ButtonLook look_;
    ButtonLogic logic_;
    ButtonImage image_;
    HDC dc_ = nullptr;
    bool releasing_ = false;  // the mouse is let go by the button itself
};

}  // namespace qvx::buttons
