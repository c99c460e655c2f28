// What the backup's two forms have in common as windows: a fixed frame with a caption, fields in twips, the keyboard of
// a dialog, and a loop of their own while they are shown.
#pragma once

#include <windows.h>

#include <vector>

#include "controls/buttons/button_window.h"
#include "win/fonts.h"
#include "win/window.h"

namespace qvx::backup {

class FormWindow : public Window {
  protected:
    // A hidden window over `owner` (may be null), `client` twips large inside.
    bool Open(HWND owner, TextView caption, Size client);
    // Shows it and returns when it is closed; the thread's other windows are disabled meanwhile. It is hidden then.
    void RunModal();
    void Close();
    bool Closed() const { return closed_; }

    // One of the system's controls, or a button of ours, in twips of the client area; in tab order.
    HWND Add(const wchar_t* kind, TextView text, DWORD style, const Rect& place, int id = 0, DWORD exStyle = 0);
    bool Add(buttons::ButtonWindow& button, TextView caption, const Rect& place, int id);
    // What the system adds around the client area, in pixels.
    Size Border() const;
    Dpi Resolution() const { return dpi_; }

    // OK and Cancel, however they are pressed.
    virtual void OnOk() = 0;
    virtual void OnCancel() = 0;
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void OnGone() override { closed_ = true; }

  private:
    bool BeforeDispatch(MSG message);
    bool PressAccessKey(char16_t character);
    buttons::ButtonWindow* FocusedButton() const;

    Dpi dpi_;
    SharedFont font_;
    std::vector<buttons::ButtonWindow*> buttons_;
    HWND focus_ = nullptr;  // where the focus was when the window lost the activation
    bool closed_ = false;
};

}  // namespace qvx::backup
