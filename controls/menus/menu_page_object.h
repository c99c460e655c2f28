// prpctlMenu: the property page of CMenus, which assigns pictures to menus.
#pragma once

#include <windows.h>

#include "Qvx.h"
#include "controls/menus/menu_page_window.h"
#include "kit/control_class.h"
#include "kit/property_page.h"

namespace qvx::menus {

// The page's class identifier; the type library does not contain the class.
extern const CLSID CLSID_prpctlMenu;
extern const PageClass menuPageClass;

class MenuPage final : public PropertyPage {
  public:
    MenuPage();

  private:
    ~MenuPage() override = default;

    PageWindow& Contents() override { return window_; }
    bool Take(IUnknown* control) override;
    bool HasControl() const override { return control_ != nullptr; }
    void Fill() override;
    // Replaces the whole contents of the image list with the pictures. Does nothing without an image list.
    void Store() override;
    // Returns the image list that the control names; null when the form has none of that name.
    ComPtr<IDispatch> ImageList() const;

    ComPtr<_CMenus> control_;
    MenuPageWindow window_;
};

}  // namespace qvx::menus
