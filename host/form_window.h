// A form: its window, its properties and what is on it. At work it is a RunningForm (running_form_window.h), in the
// designer a DesignedForm (designed_form_window.h); its controls and scripts know no more than this.
#pragma once

#include <windows.h>

#include <memory>
#include <vector>

#include "com/font_object.h"
#include "com/pointer.h"
#include "host/class_source_object.h"
#include "host/design_host.h"
#include "host/form_controls_window.h"
#include "host/form_keyboard_window.h"
#include "host/form_look.h"
#include "host/menu_window.h"
#include "host/options.h"
#include "host/property_bag_object.h"
#include "host/report_dialog.h"
#include "win/handles.h"
#include "win/window.h"

namespace qvx::host {

class FormObject;

class HostForm : public Window {
  public:
    ~HostForm() override;

    // Runs Name_Event of the script, if it has one. Elements of a control array pass their index first.
    virtual void Fire(const FormControl& control, TextView event, const std::vector<VARIANT*>& arguments) = 0;
    // Asks the form's script whether it may close, and closes it then. `code` becomes the program's exit code when it
    // is not 0 and the form agrees.
    virtual void AskToClose(int code) = 0;
    // The designer of a form under design; null for a form at work.
    virtual DesignHost* Designer() const { return nullptr; }
    // Notifies the designer of a change of a control, or (null) of the form itself.
    virtual void NoteChange(FormControl*) {}

    // --- What controls ask their form.
    Dpi FormDpi() const;
    bool DesignMode() const { return options_.design; }
    // Where the form's file is.
    const Text& Folder() const { return folder_; }
    FormPictures& Pictures() { return pictures_; }
    FontProperty& Font() { return font_; }
    OLE_COLOR BackColor() const { return look_.backColor; }
    OLE_COLOR ForeColor() const { return look_.foreColor; }
    IDispatch* Automation() const;
    const ClassSource& Classes() const { return classes_; }
    int NextTabIndex() const { return controls_.NextTabIndex(); }
    HWND ParentWindow(const FormControl& control) const;
    // The control is being destroyed.
    void ForgetControl(const FormControl& control) { keyboard_.Forget(control); }
    void UpdateToolTip(const FormControl& control) const { controls_.UpdateToolTip(control); }

    // --- What is on it.
    const std::vector<std::unique_ptr<FormControl>>& Controls() const { return controls_.All(); }
    FormControl* FindControl(TextView name, int index = -1) const { return controls_.Find(name, index); }
    FormControl* ControlOf(HWND window) const { return controls_.Of(window); }
    FormKeyboard& Keyboard() { return keyboard_; }
    MenuBar& Menus() { return menus_; }

    // --- Its properties.
    const Text& Name() const { return file_.form.name; }
    // All but the font, which is in Font().
    const FormLook& Look() const { return look_; }
    void SetCaption(Text caption);
    void SetTag(Text tag);
    void SetBackColor(OLE_COLOR color);
    void SetForeColor(OLE_COLOR color);
    // The client area in twips. Throws RunTimeError 380 for less than nothing.
    void SetClientSize(int width, int height);
    // Throws RunTimeError 380 for a style that does not exist.
    void SetFrame(int borderStyle, bool minButton, bool maxButton);

  protected:
    // All references outlive the form.
    HostForm(FormFile& file, const Options& options, Text folder, const ClassSource& classes, Reporter& reporter);

    // False when the system refuses a window.
    bool CreateFormWindow(const WindowClass& windowClass, const Text& title, HWND parent);
    // Destroys controls and window, while the derived form can still answer them.
    void Dispose();
    virtual DWORD WindowStyle() const;
    void ApplyFrame();
    // The form, with all on it, has another resolution and keeps its size in twips.
    virtual void FollowResolution();
    void AmbientChanged(DISPID property) { controls_.AmbientChanged(property); }
    // The form's colour has changed.
    virtual void OnBackColor() {}
    // The properties as they would be saved.
    SavedProperties SavedLook();
    // Brings what has changed of the form itself into its block.
    void CaptureLook(MergeMode mode);
    // The brush of a control that asks its form for it.
    LRESULT OnColor(UINT message, WPARAM wParam, LPARAM lParam);
    void OnFault() noexcept override;

    FormFile& file_;
    const Options& options_;
    Text folder_;
    const ClassSource& classes_;
    Reporter& reporter_;
    FormPictures pictures_;
    FormLook look_;
    FontProperty font_;
    SavedProperties loaded_;        // the properties as the file has them
    bool keepsClientSize_ = false;  // the size messages under way are not the user's
    UniqueBrush backBrush_;
    MenuBar menus_;
    FormControls controls_;
    FormKeyboard keyboard_{*this};
    ComPtr<FormObject> automation_;

  private:
    DWORD WindowExStyle() const;
};

}  // namespace qvx::host
