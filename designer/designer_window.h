// The forms designer: menu, toolbox, the form in the middle, its properties at the right and a status line.
//
// What it shows follows from a Document; every change is a step of it. What controls change by themselves, or others
// change of them, is gathered and brought into the document as a step of its own.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <set>
#include <vector>

#include "designer/canvas/canvas_window.h"
#include "designer/canvas/drag.h"
#include "designer/commands.h"
#include "designer/document/document.h"
#include "designer/properties/property_list_window.h"
#include "designer/toolbox_window.h"
#include "host/form_window.h"
#include "host/menu_window.h"
#include "host/options.h"
#include "win/focus_memory.h"

namespace qvx::host::designer {

// What the designer asks of people. Replaced where nobody is there to answer.
struct Questions {
    // The system's message box; the answer is IDYES and so on.
    std::function<int(HWND owner, const Text& question, UINT kind)> ask;
    // The name of a file to open or to write; empty when the question is called off. `initial` is what is offered: a
    // path, of which a folder with a separator at its end is enough.
    std::function<Text(HWND owner, bool save, const Text& initial, const Text& filter)> file;
};
Questions SystemQuestions();

class DesignerWindow final : public Window, public DesignHost {
  public:
    // All of these outlive the designer.
    DesignerWindow(const Options& options, const ClassSource& classes, Reporter& reporter,
                   Questions questions = SystemQuestions());
    ~DesignerWindow() override;

    // Makes the window with a form from a file, or with a new one for an empty name. Throws RunTimeError and
    // FormFileError.
    void Open(const Text& path);
    void Show();
    // The message loop; returns when the designer has closed.
    void Run();
    // True when the designer has used the message.
    bool TranslateKey(MSG& message);
    int ExitCode() const { return exitCode_; }

    // What tests look at.
    Document& Form() { return *document_; }
    HostForm& Picture() { return *form_; }
    Selection& Selected() { return selection_; }
    CanvasWindow& Canvas() { return canvas_; }
    ToolboxWindow& Toolbox() { return toolbox_; }
    PropertyListWindow& Properties() { return properties_; }
    const Text& Path() const { return path_; }

    // False when the command is not available now.
    bool Do(Command command);
    void Select(std::vector<ObjectId> ids);
    // A new control of that class; in the middle of what is seen when `bounds` says nothing.
    void PlaceControl(const Text& className, const std::optional<ObjectId>& container, const TwipsRect* bounds);
    // Brings what controls have changed by themselves into the document, at once.
    void CapturePending();

    void OnChanged(FormControl* control) override;
    void Rename(FormControl* control, const Text& name) override;
    void SetIndex(FormControl& control, int index) override;
    void OnResolution() override;
    void OnFileMade(const Text& path) override;

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void OnFault() noexcept override;

  private:
    // One step. A body that throws is taken back, and what it threw is told to the user. False when nothing changed.
    bool Change(const Text& what, const std::function<void()>& body, TextView merge = {},
                const std::function<bool(const Block&)>& fresh = {});
    // Throws RunTimeError while a step is under way.
    void RequireIdle() const;
    void CaptureInto();
    void AfterChange();

    // Views.
    void Layout();
    void UpdateView();
    void UpdateAdorners();
    void UpdateProperties();
    void UpdateCaption();
    void UpdateStatus();
    void UpdateMenus();
    // For whoever plays keys from outside: the log tells when something is done.
    void Log(const Text& line);
    CommandState State() const;
    FormControl* Find(const ObjectId& id) const;
    // Of what is selected, in that order; and the same, changed, written as a step.
    std::vector<TwipsRect> SelectedBounds() const;
    void SetSelectedBounds(const Text& what, const std::vector<TwipsRect>& bounds, TextView merge = {});
    Dpi FormDpi() const;

    // Mouse and keys.
    void OnMouse(const Mouse& mouse);
    void Press(const Mouse& mouse);
    void Release(const Mouse& mouse);
    void Hover(const Mouse& mouse);
    void CancelDrag();
    bool OnKey(int key, int shift);
    void Nudge(int key, int shift);
    void ShowContextMenu(Point at);
    void PressInTabOrder(Point at);
    void FocusNextPane(bool forward);

    // Commands.
    bool Execute(Command command);
    void GoThroughHistory(bool back);
    void Arrange(Arrangement arrangement);
    void CopySelection();
    void PasteClipboard(bool asArray);
    void Paste(const Text& text, bool asArray);
    void ShowPages(const ObjectId& id);
    void ShowPagesOfSubject(std::size_t subject);
    void EditMenus();
    void EditImages();
    void ShowKeys();

    // Pictures.
    // The file of a picture that the form is to name: the same when it stands in the form's folder or below, else a
    // copy of it there.
    Text KeepPicture(const Text& path);
    ComPtr<IPictureDisp> LoadPicture(const Text& path);
    // Copies the pictures that the form names into another folder, as far as they are not there. Throws RunTimeError
    // 75.
    void TakePicturesAlong(const Text& from, const Text& to);

    // Files.
    void Load(const Text& path);
    // A form that the user chooses.
    void LoadAsked();
    bool Save();
    bool SaveAs();
    bool SaveTo(const Text& path);
    // Whether the form may go: it is as it was saved, or the user does not mind.
    bool MayGo();
    void RunForm();
    void FollowRun();
    void RemoveUnusedFiles();
    void OnClose();

    static constexpr UINT_PTR runTimer = 1;

    Options options_;
    const ClassSource& classes_;
    Reporter& reporter_;
    Questions questions_;

    std::unique_ptr<Document> document_;
    std::unique_ptr<HostForm> form_;
    Selection selection_;
    Shapes shapes_;
    Drag drag_;
    std::optional<ObjectId> dragContainer_;
    bool dragAdds_ = false;
    std::set<FormControl*> pending_;
    bool formPending_ = false;
    bool capturePosted_ = false;
    // A step is under way. Controls that are made or asked in it may run message loops; nobody changes anything from
    // there.
    bool busy_ = false;
    bool tabOrderView_ = false;
    std::vector<ObjectId> tabOrderDone_;

    CanvasWindow canvas_;
    ToolboxWindow toolbox_;
    PropertyListWindow properties_;
    std::vector<void*> listed_;  // the objects that the property list shows
    HWND status_ = nullptr;
    MenuBar menus_;
    Text menuState_;
    FocusMemory focus_;

    Text path_;
    std::optional<std::string> onDisk_;  // the bytes that were last read from or written to path_
    std::vector<Text> madeFiles_;
    UniqueKernelObject running_;
    Text runCopy_;
    bool closed_ = false;
    int exitCode_ = 0;
};

}  // namespace qvx::host::designer
