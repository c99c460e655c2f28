// The designer's menus: the bar, its shortcuts, and the menu of a right click.
#pragma once

#include <windows.h>

#include <optional>

#include "designer/canvas/interaction.h"
#include "designer/commands.h"
#include "designer/design_session_window.h"
#include "host/menu_window.h"

namespace qvx::host::designer {

class CommandMenus {
  public:
    // All of these outlive it.
    CommandMenus(const DesignerEnvironment& environment, const DesignSession& session, const Interaction& interaction)
        : environment_(environment), session_(session), interaction_(interaction) {}

    // What commands apply to now.
    CommandState State() const;
    // Brings the bar up to date.
    void Update();
    // The available command of these keys.
    std::optional<Command> CommandOf(Shortcut keys) const;
    // Lets the user choose from the menu of a right click, at a point of the screen.
    std::optional<Command> Choose(POINT at) const;

  private:
    const DesignerEnvironment& environment_;
    const DesignSession& session_;
    const Interaction& interaction_;
    MenuBar bar_;
    std::optional<CommandState> shown_;
};

}  // namespace qvx::host::designer
