// What the commands of the designer's menus and keys do.
#pragma once

#include <windows.h>

#include "designer/canvas/interaction.h"
#include "designer/command_menus_window.h"
#include "designer/designer_editors_window.h"
#include "designer/designer_files_window.h"
#include "designer/form_run_window.h"

namespace qvx::host::designer {

class DesignerCommands {
  public:
    // The other parts of the designer; all of them outlive this one.
    struct Parts {
        const DesignerEnvironment& environment;
        DesignSession& session;
        DesignerViews& views;
        DesignerEditors& editors;
        DesignerFiles& files;
        FormRun& run;
        CommandMenus& menus;
        Interaction& interaction;
    };
    explicit DesignerCommands(const Parts& parts) : parts_(parts) {}

    // The command must be available. False when it has done nothing.
    bool Execute(Command command);

  private:
    void Delete(const Text& what);
    void Restack(bool front);
    void Arrange(Arrangement arrangement);
    void SelectAll();
    void SwitchTabOrder();
    void Copy();
    void PasteClipboard(bool asArray);
    void Paste(const Text& text, bool asArray);
    void ShowDocumentation() const;
    void ShowKeys() const;

    Parts parts_;
};

}  // namespace qvx::host::designer
