#include "designer/design_session_window.h"

#include <algorithm>
#include <utility>

#include "com/guard.h"
#include "common/flag_scope.h"
#include "designer/document/form_text.h"
#include "designer/document/placement.h"
#include "host/form_storage_win32.h"

namespace qvx::host::designer {

void DesignSession::Open(FormFile file, const Text& path) {
    Close();
    selection_.Clear();
    path_ = path;
    document_ = std::make_unique<Document>(std::move(file));
    form_ = std::make_unique<DesignedForm>(document_->File(), environment_.options,
                                           FolderOf(path.empty() ? FullPath(u"x.frm") : path), environment_.classes,
                                           environment_.reporter, *this);
    {
        const FlagScope busy(busy_);
        form_->Build(owner_.FormParent());
    }
    Refresh();
}

void DesignSession::Close() {
    owner_.OnFormClosing();
    form_.reset();
    pending_.clear();
    formPending_ = false;
}

// --- Selection.

void DesignSession::Select(std::vector<ObjectId> ids) {
    selection_.Set(std::move(ids));
    Refresh();
    const ObjectId* primary = selection_.Primary();
    if (const auto at = primary ? PositionOf(shapes_, *primary) : std::nullopt) owner_.Reveal(shapes_[*at].area);
}

void DesignSession::Refresh() {
    if (!form_ || !form_->Handle()) return;
    shapes_ = document_->ShapesAt(FormDpi());
    const std::vector<ObjectId> ids = IdsOf(shapes_);
    const IdTable table(ids);
    for (const auto& control : form_->Controls()) {
        // The form file does not give the size of a control that chooses its own.
        if (control->SaysSize()) continue;
        const auto at = table.PositionOf({control->Name(), control->Index()});
        if (!at) continue;
        Rect& area = shapes_[*at].area;
        const RECT pixels = control->PixelBounds();
        area.right = area.left + (pixels.right - pixels.left);
        area.bottom = area.top + (pixels.bottom - pixels.top);
    }
    selection_.Keep(shapes_);
    owner_.OnSessionChanged();
}

std::vector<TwipsRect> DesignSession::SelectedBounds() const {
    std::vector<TwipsRect> bounds;
    for (const Block* block : document_->FindAll(selection_.All())) bounds.push_back(Document::BoundsOf(*block));
    return bounds;
}

// --- Steps.

bool DesignSession::Change(const Text& what, const std::function<void()>& body, TextView merge,
                           const std::function<bool(const Block&)>& fresh) {
    if (busy_) return false;
    bool changed = false;
    std::optional<Text> failure;
    {
        const FlagScope busy(busy_);
        try {
            document_->Begin();
            // Controls say what they have changed before they are made to follow their blocks.
            CaptureInto();
            body();
            form_->FollowBlocks(fresh);
            CaptureInto();
            changed = document_->Commit(what, merge);
        } catch (...) {
            document_->Cancel();
            failure = FailureInFlightText();
            form_->FollowBlocks();
        }
    }
    AfterChange();
    if (failure) environment_.reporter.Error(*failure);
    if (changed) environment_.Log(u"Designer: step " + what);
    return changed;
}

void DesignSession::SetSelectedBounds(const Text& what, const std::vector<TwipsRect>& bounds, TextView merge) {
    const std::vector<ObjectId> ids = selection_.All();
    Change(
        what, [&] { document_->SetBounds(ids, bounds); }, merge);
}

void DesignSession::PlaceControl(const Text& className, const std::optional<ObjectId>& container,
                                 const TwipsRect* bounds) {
    TwipsRect where;
    if (bounds) {
        where = *bounds;
    } else {
        const UsualSize usual = UsualSizeOf(className);
        where = {Snapped(std::max((form_->Look().clientWidth - usual.width) / 2, 0)),
                 Snapped(std::max((form_->Look().clientHeight - usual.height) / 2, 0)), usual.width, usual.height};
    }
    ObjectId placed;
    Change(
        u"Place", [&] { placed = document_->Place(className, container, where); }, {},
        [&](const Block& block) { return block.name == placed.name; });
    if (!document_->Find(placed)) return;
    Select({placed});
}

void DesignSession::GoThroughHistory(bool back) {
    const std::vector<ObjectId> before = document_->Controls();
    const Text what = back ? document_->UndoName() : document_->RedoName();
    {
        const FlagScope busy(busy_);
        if (!(back ? document_->Undo() : document_->Redo())) return;
        form_->FollowBlocks();
    }
    // The user sees what has come back.
    const IdTable former(before);
    std::vector<ObjectId> came;
    for (const ObjectId& id : document_->Controls()) {
        if (!former.Has(id)) came.push_back(id);
    }
    if (!came.empty() && came.size() <= 50) selection_.Set({came.front()});
    AfterChange();
    environment_.Log((back ? u"Designer: undone " : u"Designer: redone ") + what);
}

void DesignSession::CaptureInto() {
    // A control may change again while it is asked; four rounds keep that from going on for ever.
    for (int round = 0; round < 4 && (!pending_.empty() || formPending_); ++round) {
        const std::set<FormControl*> controls = std::exchange(pending_, {});
        if (std::exchange(formPending_, false)) form_->Capture(nullptr);
        for (const auto& control : form_->Controls()) {
            if (controls.contains(control.get())) form_->Capture(control.get());
        }
    }
}

void DesignSession::CapturePending() {
    if (busy_ || (pending_.empty() && !formPending_)) return;
    Change(u"Property", [] {});
}

void DesignSession::CapturePosted() {
    capturePosted_ = false;
    Change(u"Property", [] {});
}

void DesignSession::AfterChange() {
    pending_.clear();
    formPending_ = false;
    Refresh();
}

// --- What controls ask of their designer.

void DesignSession::OnChanged(FormControl* control) {
    if (!form_) return;
    if (control) {
        pending_.insert(control);
    } else {
        formPending_ = true;
    }
    if (capturePosted_ || busy_) return;
    // The caller is in the middle of the change and may go on, so the step waits for the message loop.
    capturePosted_ = owner_.PostCapture();
}

void DesignSession::RequireIdle() const {
    if (busy_) Refuse(u"The form is in the middle of another change.");
}

void DesignSession::ChangeDocument(const Text& what, const std::function<void()>& body) {
    // A refusal is thrown right here, for the caller to report.
    RequireIdle();
    document_->Begin();
    try {
        body();
        document_->Commit(what);
    } catch (...) {
        document_->Cancel();
        throw;
    }
}

void DesignSession::KeepSelected(const ObjectId& before, const ObjectId& after) {
    std::vector<ObjectId> ids = selection_.All();
    std::replace(ids.begin(), ids.end(), before, after);
    selection_.Set(std::move(ids));
}

void DesignSession::Rename(FormControl* control, const Text& name) {
    ChangeDocument(u"Name", [&] {
        if (!control) return document_->RenameForm(name);
        const ObjectId id{control->Name(), control->Index()};
        document_->Rename(id, name);
        control->RememberBlock(*document_->Find({name, id.index}));
        KeepSelected(id, {name, id.index});
    });
    OnChanged(control);
}

void DesignSession::SetIndex(FormControl& control, int index) {
    const ObjectId id{control.Name(), control.Index()};
    ChangeDocument(u"Index", [&] { document_->SetIndex(id, index); });
    KeepSelected(id, {id.name, index});
    // Another control takes its place in the picture, once the caller has returned.
    capturePosted_ = owner_.PostCapture();
}

}  // namespace qvx::host::designer
