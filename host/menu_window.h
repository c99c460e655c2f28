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

    // Shows the menus on the window, which has no bar when there are none. Without a window, they are only stored.
    void Show(HWND window, std::vector<MenuItem> items);
    const std::vector<MenuItem>& Items() const { return items_; }
    // After a change of the items.
    void Update();
    MenuItem* Find(unsigned id);
    // The menu of that name; of an array, the first element.
    MenuItem* Find(TextView name);
    // All of them, each menu before what is in it.
    std::vector<const MenuItem*> All() const { return AllMenuItems(items_); }
    // The command whose shortcut these keys are; nullptr for none, and for one that is disabled.
    const MenuItem* FindShortcut(Shortcut pressed) const;
    // The menu as an object for scripts.
    IDispatch* Automation(const MenuItem& item);

  private:
    class Object;
    HMENU Build(const std::vector<MenuItem>& items, bool bar) const;

    HWND window_ = nullptr;
    std::vector<MenuItem> items_;
    std::map<unsigned, ComPtr<Object>> objects_;  // by the items' identifiers
};

}  // namespace qvx::host
