// A property page: the object that a host's frame asks, around the window with its contents.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include "com/object.h"
#include "kit/page_window.h"

namespace qvx {

template <>
struct InterfaceTraits<IPropertyPage2> {
    static bool Answers(REFIID iid) { return iid == __uuidof(IPropertyPage2) || iid == __uuidof(IPropertyPage); }
};

// What a page is given; the size is in pixels at 96 dots per inch.
struct PageLook {
    const wchar_t* title;
    Size size;
};

class PropertyPage : public ComObject<IPropertyPage2>, protected PageOwner {
  public:
    STDMETHODIMP SetPageSite(IPropertyPageSite* site) override;
    STDMETHODIMP Activate(HWND parent, LPCRECT bounds, BOOL modal) override;
    STDMETHODIMP Deactivate() override;
    STDMETHODIMP GetPageInfo(PROPPAGEINFO* info) override;
    // Of several controls, the first one is used.
    STDMETHODIMP SetObjects(ULONG count, IUnknown** objects) override;
    STDMETHODIMP Show(UINT command) override;
    STDMETHODIMP Move(LPCRECT bounds) override;
    STDMETHODIMP IsPageDirty() override;
    STDMETHODIMP Apply() override;
    STDMETHODIMP Help(LPCOLESTR folder) override;
    STDMETHODIMP TranslateAccelerator(MSG* message) override;
    STDMETHODIMP EditProperty(DISPID member) override;

  protected:
    explicit PropertyPage(const PageLook& look) : look_(look) {}
    ~PropertyPage() override = default;

    virtual PageWindow& Contents() = 0;
    // Takes the control, or gives it up for null; false for one that is not of the page's class.
    virtual bool Take(IUnknown* control) = 0;
    virtual bool HasControl() const = 0;
    // Shows what the control has. Called once, since the user's choices must not be lost.
    virtual void Fill() = 0;
    // Writes the user's choices into the control.
    virtual void Store() = 0;

  private:
    void Changed() override;
    std::shared_ptr<void> Hold() override;
    void FillOnce();

    PageLook look_;
    ComPtr<IPropertyPageSite> site_;
    bool filled_ = false;
    bool dirty_ = false;
};

}  // namespace qvx
