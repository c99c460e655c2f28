// A form at work: the window, its controls and menus, the script behind it, the keyboard, and the way back to the file.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "com/font_object.h"
#include "com/pointer.h"
#include "host/class_source_object.h"
#include "host/design_host.h"
#include "host/form_control.h"
#include "host/form_file.h"
#include "host/menu_window.h"
#include "host/options.h"
#include "host/property_bag_object.h"
#include "host/report_dialog.h"
#include "host/script_engine_object.h"
#include "host/tab_order.h"
#include "win/focus_memory.h"
#include "win/handles.h"
#include "win/window.h"

namespace qvx::host {

class FormObject;

class HostForm final : public Window {
  public:
    // `folder` is where the form's file is. All three references outlive the form.
    HostForm(FormFile file, const Options& options, Text folder, const ClassSource& classes, Reporter& reporter);
    // A form under design. The file is the designer's, and outlives the form as well.
    HostForm(FormFile& file, const Options& options, Text folder, const ClassSource& classes, Reporter& reporter,
             DesignHost& designer);
    ~HostForm() override;

    // Makes the window, its menus and controls; throws FormFileError, with the line of the control in question.
    void Build();
    // The same for a form under design, as a picture of itself inside the designer's window: what cannot be made is
    // shown as a box that says why. Throws RunTimeError when there is no window for it at all.
    void BuildForDesign(HWND parent);
    // Makes the controls what the blocks say. Those that are as they were stay; `fresh` tells the ones that are placed
    // for the first time and have nothing to load.
    void FollowBlocks(const std::function<bool(const Block&)>& fresh = {});
    // Brings what has changed of a control, or (null) of the form itself, into its block. Throws RunTimeError when the
    // control cannot say.
    void Capture(FormControl* control, MergeMode mode = MergeMode::changes);
    // From a control, or (null) from the form itself.
    void NoteChange(FormControl* control);
    DesignHost* Designer() const { return designer_; }
    // The window that shows the menus of a form under design begins here, in client pixels: above the inside.
    int MenuStripHeight() const { return menuStrip_; }
    // The menu of the bar at a point of the strip, counted from 0; in pixels from the window's inside.
    std::optional<std::size_t> MenuAt(Point point) const;

    // Runs the script's own code and Form_Load, then shows the form. False when the script does not even compile.
    bool Start(TextView scriptName, TextView source);
    // The message loop; returns when the form is gone.
    void Run();

    // What controls ask their form.
    Dpi FormDpi() const;
    // Of another resolution than before, the form and all on it take the same room in twips as before.
    void FollowResolution();
    bool DesignMode() const { return options_.design; }
    const Text& Folder() const { return folder_; }
    // Of a form under design that has been saved elsewhere.
    void SetFolder(Text folder) { folder_ = std::move(folder); }
    FormPictures& Pictures() { return pictures_; }
    FontProperty& Font() { return font_; }
    OLE_COLOR BackColor() const { return backColor_; }
    OLE_COLOR ForeColor() const { return foreColor_; }
    IDispatch* Automation() const;
    const ClassSource& Classes() const { return classes_; }
    // For a control whose block gives no TabIndex: behind all that came before.
    int NextTabIndex() const;
    HWND ParentWindow(const FormControl& control) const;
    // From a control that goes.
    void ForgetControl(const FormControl& control);
    void UpdateToolTip(const FormControl& control);
    // Runs Name_Event of the script, if it has one. Elements of a control array pass their index first.
    void Fire(const FormControl& control, TextView event, const std::vector<VARIANT*>& arguments);

    // Keyboard and focus.
    // True when the form has used the key message: by its active control, a menu, Tab, an access key, or as Enter and
    // Escape for the default and cancel buttons.
    bool TranslateKey(MSG& message);
    // The form's own part of the above, for keys that a control hands back. `shift` holds the bits of key events.
    bool HandleKey(MSG& message, int shift);
    // Looks who has the focus and tells the controls that lost and got it.
    void FollowFocus();
    FormControl* Active() const { return active_; }

    // What scripts do to a form.
    const Text& Name() const { return file_.form.name; }
    const Text& Caption() const { return caption_; }
    void SetCaption(Text caption);
    int BorderStyle() const { return borderStyle_; }
    bool MinButton() const { return minButton_; }
    bool MaxButton() const { return maxButton_; }
    // Of a form under design only. Throws RunTimeError 380 for a style there is not.
    void SetFrame(int borderStyle, bool minButton, bool maxButton);
    void SetBackColor(OLE_COLOR color);
    void SetForeColor(OLE_COLOR color);
    // Client area in twips.
    int ClientWidth() const { return clientWidth_; }
    int ClientHeight() const { return clientHeight_; }
    void SetClientSize(int width, int height);
    const std::vector<std::unique_ptr<FormControl>>& Controls() const { return controls_; }
    // The control of that name; of a control array, the element of that index or the first one. Null when there is
    // none.
    FormControl* FindControl(TextView name, int index = -1) const;
    MenuBar& Menus() { return menus_; }
    const Text& Tag() const { return tag_; }
    void SetTag(Text tag) { tag_ = std::move(tag); }
    // Asks Form_Unload, and then closes. `code` becomes the program's exit code when it is not 0 and the form agrees.
    void AskToClose(int code = 0);
    // Writes the form, as it is now, to a file. Throws RunTimeError 75 when that cannot be done, and 91 when the form
    // has closed.
    void Save(const Text& path);
    int ExitCode() const { return exitCode_; }

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void OnFault() noexcept override;

  private:
    void BuildControls(const Block& container, FormControl* parent);
    std::unique_ptr<FormControl> MakeControl(const Block& block, FormControl* parent, bool fresh = false);
    void ReadLook();
    DWORD WindowStyle() const;
    void CreateToolTips();
    std::unique_ptr<FormControl> MakeControlOrBox(const Block& block, FormControl* parent, bool fresh);
    void FollowForm();
    void ApplyFrame();
    // Of the strip that stands for the form's menu bar; 0 without menus.
    int MenuStripSize() const;
    LRESULT OnDesignMessage(UINT message, WPARAM wParam, LPARAM lParam);
    void PaintMenuStrip();
    void FillDesignBackground(HDC dc);
    void OnCommand(WPARAM wParam, LPARAM lParam);
    LRESULT OnColor(UINT message, WPARAM wParam, LPARAM lParam);
    void OnClose(int code);
    void FireForm(TextView event, const std::vector<VARIANT*>& arguments = {});
    void AmbientChanged(DISPID property);
    // What the file says of a control now; null when it says nothing any more.
    Block* BlockOf(const FormControl& control);
    SavedProperties Saved();
    static const std::vector<Text>& KnownFormProperties();
    void ReportScriptError(const ScriptError& error);

    FormControl* ControlOf(HWND window) const;
    std::vector<TabStop> TabStops() const;
    void FocusNext(bool forward, const MSG* message);
    bool PressAccessKey(MSG& message);
    bool PressDefaultOrCancel(MSG& message);

    // A form whose file is `shared`, or its own for null.
    HostForm(FormFile own, FormFile* shared, DesignHost* designer, const Options& options, Text folder,
             const ClassSource& classes, Reporter& reporter);

    FormFile own_;
    FormFile& file_;
    DesignHost* designer_ = nullptr;
    const Options& options_;
    Text folder_;
    const ClassSource& classes_;
    Reporter& reporter_;
    FormPictures pictures_;

    Text caption_;
    Text tag_;
    OLE_COLOR backColor_{};
    OLE_COLOR foreColor_{};
    int clientWidth_ = 0;
    int clientHeight_ = 0;
    int borderStyle_ = 2;  // 0 none, 1 fixed, 2 sizable, 3 fixed dialog
    bool minButton_ = true;
    bool maxButton_ = true;
    bool keepsClientSize_ = false;  // while the window is made, its size messages do not count as the user's
    FontProperty font_;
    UniqueBrush backBrush_;
    HWND toolTips_ = nullptr;
    MenuBar menus_;
    std::vector<std::unique_ptr<FormControl>> controls_;
    FormControl* active_ = nullptr;
    FocusMemory focus_;
    SavedProperties loaded_;
    std::unique_ptr<ScriptEngine> script_;
    Text scriptName_;
    ComPtr<FormObject> automation_;
    bool looping_ = false;  // inside Run
    bool running_ = false;  // the script has been loaded and the form is not closing
    int exitCode_ = 0;
    std::optional<int> closing_;  // the exit code of the closing under way

    // Of a form under design.
    Text look_;      // what its block was when it was last the same as the form
    Text menuLook_;  // the same of its menus
    int menuStrip_ = 0;
    std::vector<Rect> menuAreas_;
    UniqueBrush gridBrush_;
    bool quiet_ = false;  // the changes under way come from the blocks
};

}  // namespace qvx::host
