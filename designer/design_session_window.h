// The form under design: its document, the live picture of it, and what is selected. Every change is a step of the
// document.
//
// Changes that controls make by themselves, or that others make to them, are gathered and become a step of their own.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <vector>

#include "designer/designer_environment_window.h"
#include "designer/document/document.h"
#include "host/designed_form_window.h"

namespace qvx::host::designer {

// What the session needs of the window around it.
class SessionOwner {
  public:
    // The window in which the form is shown.
    virtual HWND FormParent() const = 0;
    // The form, its selection or its history has changed, and what is shown of them is out of date.
    virtual void OnSessionChanged() = 0;
    // The form is about to be destroyed, and nothing may use it any longer.
    virtual void OnFormClosing() = 0;
    // Another control is selected; its area is in pixels of the form's inside.
    virtual void Reveal(const Rect& area) = 0;
    // The form follows another resolution.
    virtual void OnFormResolution() = 0;
    // A control has written a picture to this file.
    virtual void OnPictureWritten(const Text& path) = 0;
    // Has CapturePosted called from the message loop. False when the system refuses.
    virtual bool PostCapture() = 0;

  protected:
    ~SessionOwner() = default;
};

class DesignSession final : public DesignHost {
  public:
    // Both outlive the session.
    DesignSession(const DesignerEnvironment& environment, SessionOwner& owner)
        : environment_(environment), owner_(owner) {}

    // Shows that form in place of the one before. `path` is its file, empty for a new form. Throws RunTimeError when
    // the system refuses a window.
    void Open(FormFile file, const Text& path);
    // Destroys the picture; the document stays.
    void Close();
    bool IsOpen() const { return form_ != nullptr; }

    Document& Form() { return *document_; }
    const Document& Form() const { return *document_; }
    DesignedForm& Picture() { return *form_; }
    const DesignedForm& Picture() const { return *form_; }
    // The control of that name in the picture; null when there is none.
    FormControl* Find(const ObjectId& id) const { return form_->FindControl(id.name, id.index); }
    Dpi FormDpi() const { return form_->FormDpi(); }
    // Where the form was loaded from or saved to; empty for one that has never been saved.
    const Text& Path() const { return path_; }
    void SetPath(Text path) { path_ = std::move(path); }

    // The controls where they are in the picture.
    const Shapes& AllShapes() const { return shapes_; }
    // After a change of the selection, the caller calls Refresh.
    Selection& Selected() { return selection_; }
    const Selection& Selected() const { return selection_; }
    // Selects these, and scrolls to the primary.
    void Select(std::vector<ObjectId> ids);
    // Brings shapes and selection up to date, and with them what the owner shows.
    void Refresh();
    // The bounds of the selected controls, in the order of the selection.
    std::vector<TwipsRect> SelectedBounds() const;

    // While a step is under way, controls may run message loops; nothing may be changed from there.
    bool Busy() const { return busy_; }
    // One step. When `body` throws, its changes are taken back and the failure is reported. `fresh` picks the controls
    // that are placed for the first time. False when nothing has changed.
    bool Change(const Text& what, const std::function<void()>& body, TextView merge = {},
                const std::function<bool(const Block&)>& fresh = {});
    // A step that gives the selected controls these bounds, in the order of the selection.
    void SetSelectedBounds(const Text& what, const std::vector<TwipsRect>& bounds, TextView merge = {});
    // A new control of that class; in the middle of the form without `bounds`.
    void PlaceControl(const Text& className, const std::optional<ObjectId>& container, const TwipsRect* bounds);
    // Undoes a step, or redoes one.
    void GoThroughHistory(bool back);
    // Brings what controls have changed by themselves into the document, at once.
    void CapturePending();
    // Called from the message loop after SessionOwner::PostCapture.
    void CapturePosted();

    void OnChanged(FormControl* control) override;
    void Rename(FormControl* control, const Text& name) override;
    void SetIndex(FormControl& control, int index) override;
    void OnResolution() override { owner_.OnFormResolution(); }
    void OnFileMade(const Text& path) override { owner_.OnPictureWritten(path); }

  private:
    void RequireIdle() const;
    // A step that leaves the picture as it is, since the control that asks for it is in the middle of a call.
    void ChangeDocument(const Text& what, const std::function<void()>& body);
    // Keeps a control selected that has got another name or index.
    void KeepSelected(const ObjectId& before, const ObjectId& after);
    void CaptureInto();
    void AfterChange();

    const DesignerEnvironment& environment_;
    SessionOwner& owner_;
    std::unique_ptr<Document> document_;
    std::unique_ptr<DesignedForm> form_;
    Text path_;
    Selection selection_;
    Shapes shapes_;
    std::set<FormControl*> pending_;
    bool formPending_ = false;
    bool capturePosted_ = false;
    bool busy_ = false;
};

}  // namespace qvx::host::designer
