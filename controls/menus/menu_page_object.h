// prpctlMenu: the property page of CMenus, which gives menus their pictures.
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

// The page's identifier; it is no class of the type library.
extern const CLSID CLSID_prpctlMenu;
extern const PageClass menuPageClass;

class MenuPage final : public ComObject<IPropertyPage2> {
  public:
    MenuPage();

    STDMETHODIMP SetPageSite(IPropertyPageSite* site) override;
    STDMETHODIMP Activate(HWND parent, LPCRECT bounds, BOOL modal) override;
    STDMETHODIMP Deactivate() override;
    STDMETHODIMP GetPageInfo(PROPPAGEINFO* info) override;
    // Of several controls the first one counts.
    STDMETHODIMP SetObjects(ULONG count, IUnknown** objects) override;
    STDMETHODIMP Show(UINT command) override;
    STDMETHODIMP Move(LPCRECT bounds) override;
    STDMETHODIMP IsPageDirty() override;
    // Puts the pictures in place of all that the image list holds. Without an image list there is nothing to do.
    STDMETHODIMP Apply() override;
    STDMETHODIMP Help(LPCOLESTR folder) override;
    STDMETHODIMP TranslateAccelerator(MSG* message) override;
    STDMETHODIMP EditProperty(DISPID member) override;

  private:
    ~MenuPage() override = default;

    void Fill();
    void Changed();
    // The image list that the control names; null when the form has none of that name.
    ComPtr<IDispatch> ImageList() const;

    ComPtr<IPropertyPageSite> site_;
    ComPtr<_CMenus> control_;
    MenuPageWindow window_;
    bool filled_ = false;  // once for the life of the page: what the user has chosen must not go
    bool dirty_ = false;
};

}  // namespace qvx::menus
