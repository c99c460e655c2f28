// The menus of a form, drawn by the library with pictures beside their items.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <vector>

#include "controls/menus/menu_host_win32.h"

namespace qvx::menus {

// The state of a form's menus at one time.
struct MenuSource {
    std::vector<MenuControl> controls;
    std::vector<KeyedPicture> pictures;  // of the form's image list
};

class MenuWindows;

class MenuImages {
  public:
    // `read` calls the host, which may do anything meanwhile.
    explicit MenuImages(std::function<MenuSource()> read) : read_(std::move(read)) {}
    ~MenuImages() { End(); }
    MenuImages(const MenuImages&) = delete;
    MenuImages& operator=(const MenuImages&) = delete;

    // Starts with a top-level window of this thread; other windows are left alone. Its menus are set up when it is
    // first painted, or when a menu opens before that.
    void Start(HWND form);
    // Sets the menus up again when the next one opens, since `read` would return something else than before.
    void SourceChanged() { setUp_ = false; }
    // Ends the drawing; the system draws the menus again.
    void End();
    // Null before Start, after End, and when the form has been destroyed.
    HWND Form() const { return form_; }

  private:
    friend class MenuWindows;

    std::shared_ptr<MenuWindows> windows_;  // not null while there is a form
    HWND form_ = nullptr;
    std::function<MenuSource()> read_;
    bool setUp_ = false;
};

}  // namespace qvx::menus
