// Mouse and keys on the form under design: selecting, dragging, placing and nudging.
#pragma once

#include <windows.h>

#include <functional>

#include "designer/canvas/canvas_keys.h"
#include "designer/canvas/interaction.h"
#include "designer/commands.h"
#include "designer/designer_editors_window.h"

namespace qvx::host::designer {

class CanvasInput {
  public:
    // All of these outlive it.
    CanvasInput(DesignSession& session, DesignerViews& views, DesignerEditors& editors, Interaction& interaction)
        : session_(session), views_(views), editors_(editors), interaction_(interaction) {}

    // Takes the input of the canvas and of the toolbox.
    void Attach();
    void CancelDrag();

    // A key asks for a command.
    std::function<void(Command)> onCommand;
    // The menu of a right click is wanted at a point of the screen.
    std::function<void(POINT)> onContextMenu;

  private:
    void OnMouse(const Mouse& mouse);
    void OnPress(const Mouse& mouse);
    void OnRelease(const Mouse& mouse);
    void OnHover(const Mouse& mouse);
    void OnContextMenu(Point at);
    void OrderTab(std::size_t shape);
    // A press beside the form's inside.
    void OnForm(bool twice);
    void OnFormSize(Size inside);
    bool OnKey(int key, int shift);
    void Apply(CanvasAction action);
    void NudgeSelected(const Nudge& nudge);
    void SelectContainer();
    // The tool is to make its control at once.
    void PlaceTool(const Text& className);

    DesignSession& session_;
    DesignerViews& views_;
    DesignerEditors& editors_;
    Interaction& interaction_;
};

}  // namespace qvx::host::designer
