// The window of the message box: it paints itself, handles keys before its buttons and closes itself.
#pragma once

#include <optional>

#include "dialogs/message_box_icons.h"
#include "dialogs/message_box_layout.h"
#include "widgets/button/button_window.h"
#include "win/gdi_surface.h"
#include "win/modal.h"
#include "win/window.h"

namespace qvx::dialogs {

struct MessageRequest {
    Text prompt;
    int buttons = 1;
    std::optional<Text> title;
    int icon = 1;
    bool blink = false;
    int timeOut = 0;  // milliseconds
};

class MessageBoxWindow final : public Window {
  public:
    ~MessageBoxWindow() override;

    // Shows the box over `owner` (may be null) and returns with the answer.
    bool Run(HWND owner, const MessageRequest& request);

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

    void OnGone() override;

  private:
    bool Open(HWND owner, const MessageRequest& request);
    // Applies size, buttons and picture for a resolution. The upper left corner goes to `at`; without it, the box is
    // placed over `owner`.
    void ApplyLayout(Dpi dpi, HWND owner, const std::optional<Point>& at);
    void PlaceButton(buttons::ButtonWindow& button, const ButtonPlace& place);
    // Paints caption, message and outline on the image that every later repaint copies.
    void PaintImage();
    void Paint();
    void Close(bool result);
    void Tick();
    void StartDrag();
    // Returns whether the box handled the message; the buttons get the others.
    bool BeforeDispatch(const MSG& message);
    bool TakeKey(int key);
    bool TakeAccessKey(char16_t character);
    void MoveFocus();
    void FocusActiveButton();
    Rect IconArea() const;

    MessageRequest request_;
    BoxLayout layout_;
    Dpi dpi_;
    IconImage icon_;
    bool iconVisible_ = true;
    bool result_ = false;
    bool closed_ = false;
    bool okActive_ = true;  // the button that has, or last had, the focus
    ModalScope* modal_ = nullptr;
    BackBuffer image_;
    buttons::ButtonWindow ok_;
    buttons::ButtonWindow cancel_;
};

}  // namespace qvx::dialogs
