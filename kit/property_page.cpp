#include "kit/property_page.h"

#include <olectl.h>

#include <cstring>

#include "com/guard.h"
#include "win/dpi.h"

namespace qvx {
namespace {

LPOLESTR TaskString(const wchar_t* text) {
    const std::size_t bytes = (wcslen(text) + 1) * sizeof(wchar_t);
    auto* copy = static_cast<LPOLESTR>(CoTaskMemAlloc(bytes));
    if (!copy) throw std::bad_alloc();
    std::memcpy(copy, text, bytes);
    return copy;
}

}  // namespace

STDMETHODIMP PropertyPage::SetPageSite(IPropertyPageSite* site) {
    site_ = ComPtr<IPropertyPageSite>(site);
    return S_OK;
}

STDMETHODIMP PropertyPage::Activate(HWND parent, LPCRECT bounds, BOOL) {
    return Guard([&]() -> HRESULT {
        if (!bounds) return E_POINTER;
        if (Contents().Handle()) return E_UNEXPECTED;
        FillOnce();
        Contents().CreateIn(parent, *bounds);
        return S_OK;
    });
}

STDMETHODIMP PropertyPage::Deactivate() {
    return Guard([&]() -> HRESULT {
        if (!Contents().Handle()) return E_UNEXPECTED;
        const ComPtr<PropertyPage> keep(this);
        Contents().FinishEntry();
        Contents().Destroy();
        return S_OK;
    });
}

STDMETHODIMP PropertyPage::GetPageInfo(PROPPAGEINFO* info) {
    return Guard([&]() -> HRESULT {
        if (!info) return E_POINTER;
        const ULONG size = info->cb;
        *info = {};
        info->cb = size;
        info->pszTitle = TaskString(look_.title);
        const Dpi dpi = ScreenDpi();
        info->size = {Scaled(look_.size.width, dpi.x), Scaled(look_.size.height, dpi.y)};
        return S_OK;
    });
}

STDMETHODIMP PropertyPage::SetObjects(ULONG count, IUnknown** objects) {
    return Guard([&]() -> HRESULT {
        if (count > 0 && !objects) return E_POINTER;
        Take(nullptr);
        if (count == 0) return S_OK;
        if (!Take(objects[0])) return E_NOINTERFACE;
        FillOnce();
        return S_OK;
    });
}

STDMETHODIMP PropertyPage::Show(UINT command) {
    return Guard([&]() -> HRESULT {
        if (!Contents().Handle()) return E_UNEXPECTED;
        ShowWindow(Contents().Handle(), static_cast<int>(command));
        if (command == SW_SHOW || command == SW_SHOWNORMAL) Contents().TakeFocus();
        return S_OK;
    });
}

STDMETHODIMP PropertyPage::Move(LPCRECT bounds) {
    return Guard([&]() -> HRESULT {
        if (!bounds) return E_POINTER;
        if (!Contents().Handle()) return E_UNEXPECTED;
        Contents().MoveTo(*bounds);
        return S_OK;
    });
}

STDMETHODIMP PropertyPage::IsPageDirty() { return dirty_ ? S_OK : S_FALSE; }

STDMETHODIMP PropertyPage::Apply() {
    return Guard([&]() -> HRESULT {
        if (!HasControl()) return E_UNEXPECTED;
        if (!dirty_) return S_OK;
        const ComPtr<PropertyPage> keep(this);
        Contents().FinishEntry();
        Store();
        dirty_ = false;
        return S_OK;
    });
}

// The page's own text is all the help there is.
STDMETHODIMP PropertyPage::Help(LPCOLESTR) { return S_FALSE; }

STDMETHODIMP PropertyPage::TranslateAccelerator(MSG* message) {
    return Guard([&]() -> HRESULT {
        if (!message) return E_POINTER;
        const ComPtr<PropertyPage> keep(this);
        return Contents().Handle() && Contents().TranslateKey(*message) ? S_OK : S_FALSE;
    });
}

STDMETHODIMP PropertyPage::EditProperty(DISPID) {
    return Guard([&]() -> HRESULT {
        if (!Contents().Handle()) return E_UNEXPECTED;
        Contents().TakeFocus();
        return S_OK;
    });
}

void PropertyPage::FillOnce() {
    if (filled_ || !HasControl()) return;
    Fill();
    filled_ = true;
}

void PropertyPage::Changed() {
    dirty_ = true;
    const ComPtr<IPropertyPageSite> site = site_;
    if (site) site->OnStatusChange(PROPPAGESTATUS_DIRTY | PROPPAGESTATUS_VALIDATE);
}

std::shared_ptr<void> PropertyPage::Hold() { return std::make_shared<ComPtr<PropertyPage>>(this); }

}  // namespace qvx
