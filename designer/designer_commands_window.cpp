// Commands of the designer's menus and keys, and its editors. Files: designer_files_window.cpp.
#include <algorithm>

#include "com/guard.h"
#include "common/flag_scope.h"
#include "designer/designer_window.h"
#include "designer/document/form_text.h"
#include "designer/editors/image_editor_dialog.h"
#include "designer/editors/menu_editor_dialog.h"
#include "designer/editors/property_frame_dialog.h"
#include "host/form_storage_win32.h"
#include "host/sited_control.h"
#include "win/clipboard.h"

namespace qvx::host::designer {

bool DesignerWindow::Do(Command command) {
    if (busy_) return false;
    CapturePending();
    CancelDrag();
    if (!Available(command, State())) return false;
    return Execute(command);
}

bool DesignerWindow::Execute(Command command) {
    switch (command) {
        case Command::newForm:
            if (MayGo()) Load({});
            break;
        case Command::open:
            if (MayGo()) LoadAsked();
            break;
        case Command::save:
            return Save();
        case Command::saveAs:
            return SaveAs();
        case Command::run:
            RunForm();
            break;
        case Command::close:
            PostMessageW(Handle(), WM_CLOSE, 0, 0);
            break;
        case Command::undo:
        case Command::redo:
            GoThroughHistory(command == Command::undo);
            break;
        case Command::cut:
        case Command::copy:
            CopySelection();
            if (command == Command::copy) break;
            Change(u"Cut", [&] { document_->Delete(selection_.All()); });
            break;
        case Command::remove:
            Change(u"Delete", [&] { document_->Delete(selection_.All()); });
            break;
        case Command::paste:
        case Command::pasteArray:
            PasteClipboard(command == Command::pasteArray);
            break;
        case Command::duplicate:
            Paste(document_->CopyText(selection_.All()), false);
            break;
        case Command::selectAll:
            selection_.SelectAll(shapes_);
            UpdateView();
            break;
        case Command::tabOrder:
            tabOrderView_ = !tabOrderView_;
            tabOrderDone_.clear();
            UpdateView();
            break;
        case Command::properties:
            SetFocus(properties_.Handle());
            break;
        case Command::toolbox:
            SetFocus(toolbox_.Handle());
            break;
        case Command::menus:
            EditMenus();
            break;
        case Command::images:
            EditImages();
            break;
        case Command::pages:
            if (const ObjectId* primary = selection_.Primary()) ShowPages(ObjectId(*primary));
            break;
        case Command::bringToFront:
        case Command::sendToBack:
            Change(command == Command::bringToFront ? u"Bring to Front" : u"Send to Back",
                   [&] { document_->Restack(selection_.All(), command == Command::bringToFront); });
            break;
        case Command::alignLefts:
        case Command::alignCenters:
        case Command::alignRights:
        case Command::alignTops:
        case Command::alignMiddles:
        case Command::alignBottoms:
        case Command::alignToGrid:
        case Command::sameWidth:
        case Command::sameHeight:
        case Command::sameSize:
        case Command::spaceAcross:
        case Command::spaceDown:
            Arrange(*ArrangementOf(command));
            break;
        case Command::keys:
            ShowKeys();
            break;
        case Command::none:
            return false;
    }
    return true;
}

void DesignerWindow::GoThroughHistory(bool back) {
    const std::vector<ObjectId> before = document_->Controls();
    const Text what = back ? document_->UndoName() : document_->RedoName();
    {
        const FlagScope busy(busy_);
        if (!(back ? document_->Undo() : document_->Redo())) return;
        form_->FollowBlocks();
    }
    // What has come back is what is looked at.
    std::vector<ObjectId> came;
    for (const ObjectId& id : document_->Controls()) {
        if (std::find(before.begin(), before.end(), id) == before.end()) came.push_back(id);
    }
    if (!came.empty() && came.size() <= 50) selection_.Set({came.front()});
    AfterChange();
    Log((back ? u"Designer: undone " : u"Designer: redone ") + what);
}

void DesignerWindow::Arrange(Arrangement arrangement) {
    const std::vector<TwipsRect> bounds = SelectedBounds();
    SetSelectedBounds(u"Format", Arranged(bounds, bounds.size() - 1, arrangement));
}

void DesignerWindow::PlaceControl(const Text& className, const std::optional<ObjectId>& container,
                                  const TwipsRect* bounds) {
    TwipsRect where;
    if (bounds) {
        where = *bounds;
    } else {
        const UsualSize usual = UsualSizeOf(className);
        where = {Snapped(std::max((form_->ClientWidth() - usual.width) / 2, 0)),
                 Snapped(std::max((form_->ClientHeight() - usual.height) / 2, 0)), usual.width, usual.height};
    }
    ObjectId placed;
    Change(
        u"Place", [&] { placed = document_->Place(className, container, where); }, {},
        [&](const Block& block) { return block.name == placed.name; });
    if (!document_->Find(placed)) return;
    Select({placed});
}

void DesignerWindow::CopySelection() {
    const Text text = document_->CopyText(selection_.All());
    try {
        PutOnClipboard(Handle(), text);
    } catch (...) {
        reporter_.Error(FailureInFlightText());
    }
    UpdateMenus();
}

void DesignerWindow::PasteClipboard(bool asArray) {
    std::optional<Text> text;
    try {
        text = TextOnClipboard(Handle());
    } catch (...) {
        reporter_.Error(FailureInFlightText());
        return;
    }
    if (text) Paste(*text, asArray);
}

void DesignerWindow::Paste(const Text& text, bool asArray) {
    // Into the frame that is selected alone, beside what is selected otherwise.
    std::optional<ObjectId> container;
    if (const ObjectId* primary = selection_.Primary()) {
        for (const Shape& shape : shapes_) {
            if (!(shape.id == *primary)) continue;
            const bool itself =
                shape.holdsOthers && selection_.All().size() == 1 && !TextView(text).starts_with(u"Begin Frame");
            if (itself) {
                container = shape.id;
            } else if (shape.container) {
                container = shapes_[*shape.container].id;
            }
        }
    }
    std::vector<ObjectId> pasted;
    Change(u"Paste", [&] { pasted = document_->Paste(text, container, asArray); });
    if (!pasted.empty() && document_->Find(pasted.front())) Select(std::move(pasted));
}

void DesignerWindow::ShowPages(const ObjectId& id) {
    auto* sited = dynamic_cast<SitedControl*>(Find(id));
    if (const auto pages = sited ? sited->Pages() : std::vector<CLSID>(); !pages.empty()) {
        try {
            const auto frame = PropertyFrame::Make(Handle(), sited->Title(), sited->Object(), pages, classes_);
            Log(u"Designer: property pages");
            frame->Ask(Handle());
        } catch (...) {
            reporter_.Error(FailureInFlightText());
        }
        CapturePending();
        return;
    }
    const Block* block = document_->Find(id);
    if (block && SameName(block->className, u"ImageList")) {
        EditImages();
        return;
    }
    SetFocus(properties_.Handle());
}

void DesignerWindow::ShowPagesOfSubject(std::size_t subject) {
    const std::vector<ObjectId>& ids = selection_.All();
    if (subject < ids.size()) ShowPages(ObjectId(ids[ids.size() - 1 - subject]));
}

void DesignerWindow::ShowKeys() {
    questions_.ask(Handle(),
                   u"Choose a tool in the toolbox and draw the control on the form, or press Enter.\n\n"
                   u"Click\tselect; with Ctrl or Shift, add or take out\n"
                   u"Drag\tmove; on a handle, size; on the form, select by a rubber band (in a frame with Ctrl)\n"
                   u"Alt\tkeeps off the grid\n"
                   u"Arrows\tmove by the grid; with Ctrl by a pixel; with Shift, size\n"
                   u"Tab\tselects the next control, Shift+Tab the one before, Escape what holds it\n"
                   u"Enter\tproperty pages\n"
                   u"F4\tproperties; F6 goes round the panes\n"
                   u"Double-click\tproperty pages; on the form's menu bar, the menu editor",
                   MB_OK | MB_ICONINFORMATION);
}

// --- Editors.

void DesignerWindow::EditMenus() {
    CapturePending();
    MenuEditor editor(document_->File().form);
    Log(u"Designer: menu editor");
    if (!editor.Ask(Handle())) return;
    Change(u"Menus", [&] { WriteMenuLines(document_->File().form, editor.Lines()); });
}

void DesignerWindow::EditImages() {
    const ObjectId* primary = selection_.Primary();
    const Block* block = primary ? document_->Find(*primary) : nullptr;
    if (!block || !SameName(block->className, u"ImageList")) return;
    const ObjectId id = *primary;
    ImageEditor editor(ReadImages(*block), form_->Folder(), [this](HWND owner) {
        using namespace std::string_literals;
        const Text chosen = questions_.file(owner, false, form_->Folder() + u'\\',
                                            u"Pictures\0*.bmp;*.ico;*.gif;*.jpg;*.png\0All files\0*.*\0"s);
        return chosen.empty() ? chosen : KeepPicture(FullPath(chosen));
    });
    if (!editor.Ask(Handle())) return;
    Change(u"Images", [&] {
        if (Block* list = document_->Find(id)) WriteImages(*list, editor.Images());
    });
}

}  // namespace qvx::host::designer
