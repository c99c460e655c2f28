// The menu bar of a form's window, and the menus as scripts see them.
#pragma once

#include <windows.h>

#include <map>

#include "host/menu_model.h"
#include "host/named_object.h"
#include "win/handles.h"

namespace qvx::host {

class MenuBar {
  public:
    MenuBar();
    MenuBar(const MenuBar&) = delete;
    MenuBar& operator=(const MenuBar&) = delete;
    ~MenuBar();

    // Shows the menus on the window; without any the window has no bar. Without a window they are only known.
    void Show(HWND window, std::vector<MenuItem> items);
    const std::vector<MenuItem>& Items() const { return items_; }
    // After a change of the items.
    void Update();
    MenuItem* Find(unsigned id);
    MenuItem* Find(TextView name);
    // The command whose shortcut these keys are; nullptr for none, and for one that is disabled.
    const MenuItem* FindShortcut(Shortcut pressed) const;
    // The menu of that name as an object for scripts; null when there is none.
    IDispatch* Automation(TextView name);
    std::vector<Text> Names() const;

  private:
    class Object;
    HMENU Build(const std::vector<MenuItem>& items, bool bar) const;

    HWND window_ = nullptr;
    std::vector<MenuItem> items_;
    std::map<Text, ComPtr<Object>> objects_;
};

}  // namespace qvx::host
