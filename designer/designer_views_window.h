// The panes of the designer: toolbox, canvas, property list and status line, and what they show of the session.
#pragma once

#include <windows.h>

#include <vector>

#include "designer/canvas/canvas_window.h"
#include "designer/canvas/interaction.h"
#include "designer/design_session_window.h"
#include "designer/designer_keys.h"
#include "designer/properties/property_list_window.h"
#include "designer/toolbox_window.h"

namespace qvx::host::designer {

class DesignerViews {
  public:
    // All of these outlive it.
    DesignerViews(const DesignerEnvironment& environment, DesignSession& session, const Interaction& interaction)
        : environment_(environment), session_(session), interaction_(interaction) {}

    void Create(HWND designer);
    // Fits the panes into the designer's window.
    void Layout();
    // The window in which the form is shown.
    HWND FormParent() const { return canvas_.Handle(); }
    CanvasWindow& Canvas() { return canvas_; }
    ToolboxWindow& Toolbox() { return toolbox_; }
    PropertyListWindow& Properties() { return properties_; }

    // Shows the session as it is now.
    void Update();
    // The same of what the mouse alone changes.
    void UpdateInteraction();
    void UpdateAdorners();
    void UpdateStatus();
    // Shows no form at all.
    void Clear();

    // The pane with the focus; the canvas when none has it.
    Pane Focused() const;
    // What a key message for a window is meant for.
    KeyTarget TargetOf(HWND window) const;
    void Focus(Pane pane);

  private:
    void UpdateProperties();
    void UpdateCaption();

    const DesignerEnvironment& environment_;
    DesignSession& session_;
    const Interaction& interaction_;
    CanvasWindow canvas_;
    ToolboxWindow toolbox_;
    PropertyListWindow properties_;
    std::vector<void*> listed_;  // the objects that the property list shows
    HWND status_ = nullptr;
};

}  // namespace qvx::host::designer
