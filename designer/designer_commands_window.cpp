#include "designer/designer_commands_window.h"

#include "com/module.h"
#include "com/wide_text.h"
#include "designer/help_page.h"
#include "win/clipboard.h"

namespace qvx::host::designer {

bool DesignerCommands::Execute(Command command) {
    DesignSession& session = parts_.session;
    switch (command) {
        case Command::newForm:
            if (parts_.files.MayGo()) parts_.files.Load({});
            break;
        case Command::open:
            if (parts_.files.MayGo()) parts_.files.LoadChosen();
            break;
        case Command::save:
            return parts_.files.Save();
        case Command::saveAs:
            return parts_.files.SaveAs();
        case Command::run:
            parts_.run.Start();
            break;
        case Command::close:
            PostMessageW(parts_.environment.window, WM_CLOSE, 0, 0);
            break;
        case Command::undo:
        case Command::redo:
            session.GoThroughHistory(command == Command::undo);
            break;
        case Command::cut:
            Copy();
            Delete(u"Cut");
            break;
        case Command::copy:
            Copy();
            break;
        case Command::remove:
            Delete(u"Delete");
            break;
        case Command::paste:
        case Command::pasteArray:
            PasteClipboard(command == Command::pasteArray);
            break;
        case Command::duplicate:
            Paste(session.Form().CopyText(session.Selected().All()), false);
            break;
        case Command::selectAll:
            SelectAll();
            break;
        case Command::tabOrder:
            SwitchTabOrder();
            break;
        case Command::properties:
            parts_.views.Focus(Pane::properties);
            break;
        case Command::toolbox:
            parts_.views.Focus(Pane::toolbox);
            break;
        case Command::menus:
            parts_.editors.EditMenus();
            break;
        case Command::images:
            parts_.editors.EditImages();
            break;
        case Command::pages:
            parts_.editors.ShowPagesOfSubject(0);
            break;
        case Command::bringToFront:
        case Command::sendToBack:
            Restack(command == Command::bringToFront);
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
        case Command::documentation:
            ShowDocumentation();
            break;
        case Command::keys:
            ShowKeys();
            break;
        case Command::none:
            return false;
    }
    return true;
}

void DesignerCommands::Delete(const Text& what) {
    DesignSession& session = parts_.session;
    session.Change(what, [&] { session.Form().Delete(session.Selected().All()); });
}

void DesignerCommands::Restack(bool front) {
    DesignSession& session = parts_.session;
    session.Change(front ? u"Bring to Front" : u"Send to Back",
                   [&] { session.Form().Restack(session.Selected().All(), front); });
}

void DesignerCommands::Arrange(Arrangement arrangement) {
    const std::vector<TwipsRect> bounds = parts_.session.SelectedBounds();
    parts_.session.SetSelectedBounds(u"Format", Arranged(bounds, bounds.size() - 1, arrangement));
}

void DesignerCommands::SelectAll() {
    parts_.session.Selected().SelectAll(parts_.session.AllShapes());
    parts_.session.Refresh();
}

void DesignerCommands::SwitchTabOrder() {
    parts_.interaction.OrderTabs(!parts_.interaction.ordersTabs);
    parts_.session.Refresh();
}

void DesignerCommands::Copy() {
    const Text text = parts_.session.Form().CopyText(parts_.session.Selected().All());
    try {
        PutOnClipboard(parts_.environment.window, text);
    } catch (...) {
        parts_.environment.ReportFailure();
    }
    parts_.menus.Update();
}

void DesignerCommands::PasteClipboard(bool asArray) {
    std::optional<Text> text;
    try {
        text = TextOnClipboard(parts_.environment.window);
    } catch (...) {
        parts_.environment.ReportFailure();
        return;
    }
    if (text) Paste(*text, asArray);
}

void DesignerCommands::Paste(const Text& text, bool asArray) {
    DesignSession& session = parts_.session;
    const auto container = PasteContainer(session.AllShapes(), session.Selected(), text);
    std::vector<ObjectId> pasted;
    session.Change(u"Paste", [&] { pasted = session.Form().Paste(text, container, asArray); });
    if (!pasted.empty() && session.Form().Find(pasted.front())) session.Select(std::move(pasted));
}

void DesignerCommands::ShowDocumentation() const {
    const ObjectId* primary = parts_.session.Selected().Primary();
    const FormControl* control = primary ? parts_.session.Find(*primary) : nullptr;
    const bool lists = parts_.views.Focused() == Pane::properties;
    const HelpPage page = HelpPageOf(control ? control->ClassName() : Text(),
                                     lists ? parts_.views.Properties().CurrentProperty() : Text());
    for (const Text& folder : DocumentationFolders(ModulePath(nullptr))) {
        const Text file = folder + u"\\" + page.file;
        if (GetFileAttributesW(Wide(file)) == INVALID_FILE_ATTRIBUTES) continue;
        const Text address = FileAddress(file, page.anchor);
        parts_.environment.Log(u"Designer: documentation " + page.file + u"#" + page.anchor);
        if (!parts_.environment.questions.browse(parts_.environment.window, file, address)) {
            parts_.environment.Ask(u"No program shows the page:\n" + file, MB_OK | MB_ICONEXCLAMATION);
        }
        return;
    }
    parts_.environment.Ask(u"The page " + page.file +
                               u" of the documentation is not here. It is looked for in a folder \"docs\" beside the "
                               u"program, or in the folder above the program's.",
                           MB_OK | MB_ICONEXCLAMATION);
}

void DesignerCommands::ShowKeys() const {
    parts_.environment.Ask(
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

}  // namespace qvx::host::designer
