// The host's own simple controls, made of the system's windows, so that a form needs no component for its labels and
// text boxes.
//
//     Label     Caption Alignment BackStyle BorderStyle BackColor ForeColor Font; Click DblClick
//     TextBox   Text MaxLength Locked Alignment MultiLine ScrollBars PasswordChar SelStart SelLength SelText
//               BackColor ForeColor Font; Change
//     Frame     Caption BorderStyle (0 none, 1 a line with the caption, 2 sunken) BackColor ForeColor Font; holds other
//               controls
//
// All of them raise GotFocus and LostFocus where they can have the focus.
#pragma once

#include <windows.h>

#include <memory>

#include "com/font_object.h"
#include "host/form_control.h"
#include "win/fonts.h"
#include "win/handles.h"
#include "win/window.h"

namespace qvx::host {

enum class BuiltIn { label, textBox, frame };

// The built-in class of that name, if it is one.
std::optional<BuiltIn> FindBuiltIn(TextView className);

class BuiltInControl final : public FormControl {
  public:
    BuiltInControl(HostForm& form, const Block& block, FormControl* container, BuiltIn kind);
    ~BuiltInControl() override;

    HWND Window() const override { return window_; }
    void Focus(const MSG* message) override;
    bool Enabled() const override { return enabled_; }
    void SetEnabled(bool enabled) override;
    ComPtr<IDispatch> Inner() const override;
    std::vector<char16_t> AccessKeys() const override;
    bool TakesReturn() const override { return kind_ == BuiltIn::textBox && multiLine_; }
    bool IgnoresReturn() const override { return kind_ == BuiltIn::textBox && !multiLine_; }
    void FollowResolution() override;
    void OnAmbientChanged(DISPID property) override;
    void OnCommand(UINT notification) override;
    HBRUSH OnColor(HDC dc) override;

  protected:
    bool AcceptsFocus() const override;
    void ApplyBounds(const RECT& pixels) override;
    void ApplyVisible(bool visible) override;
    void SaveOwn(SavedProperties& saved) override;
    std::vector<Text> KnownProperties() const override;

  private:
    class Members;
    class Relay;

    void CreateSystemWindow();
    // Makes the control's window anew, for styles that the system only reads then.
    void RecreateSystemWindow();
    void ApplyFont();
    void SetColor(OLE_COLOR& color, OLE_COLOR value);
    DWORD StyleBits() const;
    // A frame without the line that its caption is in.
    bool IsPanel() const { return kind_ == BuiltIn::frame && borderStyle_ != 1; }

    BuiltIn kind_;
    HWND window_ = nullptr;
    bool enabled_;
    OLE_COLOR backColor_;
    OLE_COLOR foreColor_;
    bool ownBackColor_;  // as opposed to following the form
    bool ownForeColor_;
    bool ownFont_;
    int alignment_;    // 0 left, 1 right, 2 centre
    int borderStyle_;  // 0 none, 1 single
    bool opaque_;
    bool multiLine_;
    int scrollBars_;  // 0 none, 1 horizontal, 2 vertical, 3 both
    bool locked_;
    int maxLength_;
    Text passwordChar_;
    FontProperty font_;
    SharedFont systemFont_;
    UniqueBrush brush_;
    ComPtr<Members> members_;
    std::unique_ptr<Relay> relay_;
    bool quiet_ = false;  // changes of the text by the form itself at the start
};

}  // namespace qvx::host
