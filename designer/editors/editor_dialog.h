// The base of the designer's modal editors: a window of the system's controls with OK and Cancel, in which Tab goes
// round.
#pragma once

#include <windows.h>

#include <utility>
#include <vector>

#include "common/geometry.h"
#include "common/text.h"
#include "win/fonts.h"
#include "win/window.h"

namespace qvx::host::designer {

class EditorDialog : public Window {
  public:
    // True when the user closes it by OK and Accept agrees.
    bool Ask(HWND owner);

  protected:
    EditorDialog(Text title, Size inside) : title_(std::move(title)), inside_(inside) {}

    // All sizes are pixels at 96 dots per inch.
    HWND Add(const wchar_t* className, TextView text, DWORD style, const Rect& area, int id = 0, DWORD exStyle = 0);
    HWND AddLabel(TextView text, const Rect& area) { return Add(L"STATIC", text, SS_LEFT, area); }
    HWND AddButton(TextView text, const Rect& area, int id, DWORD style = BS_PUSHBUTTON) {
        return Add(L"BUTTON", text, style | WS_TABSTOP, area, id);
    }
    HWND AddEdit(const Rect& area, int id, DWORD style = 0) {
        return Add(L"EDIT", {}, ES_AUTOHSCROLL | WS_TABSTOP | style, area, id, WS_EX_CLIENTEDGE);
    }
    HWND Item(int id) const { return GetDlgItem(Handle(), id); }
    Text TextOf(int id) const;
    void SetText(int id, TextView text);
    int Scaled(int pixels) const;
    // Moves a window to where Add would put it.
    void Place(HWND window, const Rect& area) const;
    // Fits everything to another resolution.
    virtual void FollowResolution();
    Size Inside() const { return inside_; }
    const GdiFont& Font() const { return *font_; }

    // Makes the controls.
    virtual void Build() = 0;
    // The control that has the focus first.
    virtual HWND FirstField() const { return GetNextDlgTabItem(Handle(), nullptr, FALSE); }
    virtual void OnCommand(int id, int notification) = 0;
    // Whether the input can be accepted. If not, the user has been told why.
    virtual bool Accept() = 0;

    // A key, before the dialog handles it itself; true when it was used.
    virtual bool TranslateKey(MSG& message);

    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void OnFault() noexcept override {}

    static constexpr int applyId = 90;
    bool applies_ = false;  // there is an Apply button too, for OnCommand

  private:
    // The window with its frame, in pixels.
    Size WindowSize() const;

    Text title_;
    Size inside_;
    Dpi dpi_;
    std::vector<std::pair<HWND, Rect>> added_;
    SharedFont font_;
    bool open_ = false;
    bool accepted_ = false;
    bool byLabel_ = false;  // the present key was a label's, and has reached its field
};

}  // namespace qvx::host::designer
