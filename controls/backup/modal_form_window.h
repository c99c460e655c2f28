// The common parts of the backup's forms: a modal window with the library's buttons and the system's controls on it,
// used with the keys of every dialog.
#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <vector>

#include "common/geometry.h"
#include "common/text.h"
#include "widgets/button/button_window.h"
#include "win/focus_memory.h"
#include "win/fonts.h"
#include "win/modal.h"
#include "win/window.h"

namespace qvx::backup {

class ModalForm : public Window {
  protected:
    // Creates the empty form over `owner`'s top-level window (may be null), not yet visible. Returns false when the
    // system refuses.
    bool Open(HWND owner, TextView caption);
    // Children are created in tab order. Enter and Escape click the buttons with the identifiers IDOK and IDCANCEL.
    // Returns false when the system refuses.
    bool AddButton(buttons::ButtonWindow& button, int id, TextView caption, std::function<void()> click);
    // Adds one of the system's controls; returns null when the system refuses.
    HWND AddControl(const wchar_t* windowClass, TextView caption, DWORD style, DWORD exStyle = 0);

    // Shows the form and returns when it has finished and is hidden, or has been destroyed. The focus starts at
    // `first`, with its text selected.
    void RunModal(HWND first);
    void Finish();
    // Gives the focus to a field and selects its text.
    static void EnterField(HWND field);

    Dpi Resolution() const { return dpi_; }
    // Returns the size that the system's frame adds to the client area, in pixels.
    Size FrameSize() const;
    void Place(HWND child, const Rect& twips) const;
    // Keeps the upper left corner once the form is visible.
    void SetWindowSize(Size pixels) const;

    // Positions everything: at the beginning, and when the resolution changes.
    virtual void LayOut() = 0;
    // The window's close box was clicked.
    virtual void OnCloseBox() = 0;

    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void OnGone() override;

  private:
    bool BeforeDispatch(const MSG& message);
    bool TakeKey(WPARAM key, LPARAM details);
    bool TakeAccessKey(char16_t character);
    void Press(buttons::ButtonWindow& button, int key);
    // Returns the button with the focus, if any.
    buttons::ButtonWindow* FocusedButton() const;
    buttons::ButtonWindow* ButtonOf(int id) const;
    void ApplyFonts();

    Dpi dpi_;
    std::optional<Point> corner_;  // where the system wants the form during the layout for another resolution
    HWND owner_ = nullptr;
    SharedFont font_;
    std::vector<buttons::ButtonWindow*> buttons_;
    std::vector<HWND> controls_;
    FocusMemory focus_;
    ModalScope* modal_ = nullptr;
    bool finished_ = false;
};

}  // namespace qvx::backup
