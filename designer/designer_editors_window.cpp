#include "designer/designer_editors_window.h"

#include "designer/document/image_edit.h"
#include "designer/document/menu_edit.h"
#include "designer/editors/image_editor_dialog.h"
#include "designer/editors/menu_editor_dialog.h"
#include "designer/editors/property_frame_dialog.h"
#include "host/form_storage_win32.h"
#include "host/sited_control.h"

namespace qvx::host::designer {

void DesignerEditors::EditMenus() {
    session_.CapturePending();
    MenuEditor editor(session_.Form().File().form);
    environment_.Log(u"Designer: menu editor");
    if (!editor.Ask(environment_.window)) return;
    session_.Change(u"Menus", [&] { WriteMenuLines(session_.Form().File().form, editor.Lines()); });
}

void DesignerEditors::EditImages() {
    const ObjectId* primary = session_.Selected().Primary();
    const Block* block = primary ? session_.Form().Find(*primary) : nullptr;
    if (!block || !SameName(block->className, u"ImageList")) return;
    const ObjectId id = *primary;
    const Text folder = session_.Picture().Folder();
    ImageEditor editor(ReadImages(*block), folder, [&](HWND owner) {
        using namespace std::string_literals;
        const Text chosen = environment_.questions.file(owner, false, folder + u'\\',
                                                        u"Pictures\0*.bmp;*.ico;*.gif;*.jpg;*.png\0All files\0*.*\0"s);
        return chosen.empty() ? chosen : pictures_.Keep(FullPath(chosen));
    });
    if (!editor.Ask(environment_.window)) return;
    session_.Change(u"Images", [&] {
        if (Block* list = session_.Form().Find(id)) WriteImages(*list, editor.Images());
    });
}

void DesignerEditors::ShowPages(const ObjectId& id) {
    auto* sited = dynamic_cast<SitedControl*>(session_.Find(id));
    if (const auto pages = sited ? sited->Pages() : std::vector<CLSID>(); !pages.empty()) {
        try {
            const auto frame =
                PropertyFrame::Make(environment_.window, sited->Title(), sited->Object(), pages, environment_.classes);
            environment_.Log(u"Designer: property pages");
            frame->Ask(environment_.window);
        } catch (...) {
            environment_.ReportFailure();
        }
        session_.CapturePending();
        return;
    }
    const Block* block = session_.Form().Find(id);
    if (block && SameName(block->className, u"ImageList")) return EditImages();
    views_.Focus(Pane::properties);
}

void DesignerEditors::ShowPagesOfSubject(std::size_t subject) {
    const std::vector<ObjectId>& ids = session_.Selected().All();
    // A copy: the selection may change while the pages are open.
    if (subject < ids.size()) ShowPages(ObjectId(ids[ids.size() - 1 - subject]));
}

}  // namespace qvx::host::designer
