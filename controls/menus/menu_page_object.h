// prpctlMenu: the property page of CMenus, which assigns pictures to menus.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include "Qvx.h"
#include "com/object.h"
#include "controls/menus/menu_page_window.h"
#include "kit/control_class.h"

namespace qvx {

template <>
struct InterfaceTraits<IPropertyPage2> {
    static bool Answers(REFIID iid) { return iid == __uuidof(IPropertyPage2) || iid == __uuidof(IPropertyPage); }
};

}  // namespace qvx

namespace qvx::menus {

// The page's class identifier; the type library does not contain the class.
extern const CLSID CLSID_prpctlMenu;
extern const PageClass menuPageClass;

class MenuPage final : public ComObject<IPropertyPage2> {
  public:
    MenuPage();

    STDMETHODIMP SetPageSite(IPropertyPageSite* site) override;
    STDMETHODIMP Activate(HWND parent, LPCRECT bounds, BOOL modal) override;
    STDMETHODIMP Deactivate() override;
    STDMETHODIMP GetPageInfo(PROPPAGEINFO* info) override;
    // Of several controls, the first one is used.
    STDMETHODIMP SetObjects(ULONG count, IUnknown** objects) override;
    STDMETHODIMP Show(UINT command) override;
    STDMETHODIMP Move(LPCRECT bounds) override;
    STDMETHODIMP IsPageDirty() override;
    // Replaces the whole contents of the image list with the pictures. Does nothing without an image list.
    STDMETHODIMP Apply() override;
    STDMETHODIMP Help(LPCOLESTR folder) override;
    STDMETHODIMP TranslateAccelerator(MSG* message) override;
    STDMETHODIMP EditProperty(DISPID member) override;

  private:
    ~MenuPage() override = default;

    void Fill();
    void Changed();
    // Returns the image list that the control names; null when the form has none of that name.
    ComPtr<IDispatch> ImageList() const;

    ComPtr<IPropertyPageSite> site_;
    ComPtr<_CMenus> control_;
    MenuPageWindow window_;
    bool filled_ = false;  // the page is filled only once, since the user's choices must not be lost
    bool dirty_ = false;
};

}  // namespace qvx::menus
