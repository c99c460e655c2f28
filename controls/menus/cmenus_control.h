// The CMenus control: pictures beside the items of its form's menus.
#pragma once

#include "Qvx.h"
#include "controls/menus/menu_images_win32.h"
#include "kit/invisible_control.h"

namespace qvx::menus {

class CMenusControl final : public InvisibleControl<_CMenus> {
  public:
    static const ControlClass classInfo;

    CMenusControl();

    const PropertyTable& Properties() override;

    STDMETHODIMP get_ImageList(BSTR* result) override;
    STDMETHODIMP put_ImageList(BSTR value) override;
    // Returns Nothing in a host that has no such objects.
    STDMETHODIMP get_Controls(IDispatch** result) override;
    STDMETHODIMP get_OWNParent(IDispatch** result) override;

  protected:
    void Follow(bool working) override;
    void DrawPicture(Surface& surface, const Rect& area) override;
    std::span<const CLSID> PropertyPages() const override;

  private:
    ~CMenusControl() override = default;

    void Take(Text imageList);
    MenuSource Read();

    Text imageList_;
    MenuImages images_;
};

}  // namespace qvx::menus
