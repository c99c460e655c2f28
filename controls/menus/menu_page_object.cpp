#include "controls/menus/menu_page_object.h"

#include <olectl.h>

#include <cstring>

#include "com/bstr.h"
#include "com/guard.h"
#include "com/late_bound.h"

namespace qvx::menus {

namespace {

constexpr wchar_t title[] = L"Menu Pictures";
constexpr wchar_t description[] = L"The pictures of a form's menus";

LPOLESTR TaskString(const wchar_t* text) {
    const std::size_t bytes = (wcslen(text) + 1) * sizeof(wchar_t);
    auto* copy = static_cast<LPOLESTR>(CoTaskMemAlloc(bytes));
    if (!copy) throw std::bad_alloc();
    std::memcpy(copy, text, bytes);
    return copy;
}

HRESULT CreatePage(REFIID iid, void** object) { return MakeObject<MenuPage>()->QueryInterface(iid, object); }

ComPtr<IDispatch> ControlsOf(_CMenus* control) {
    ComPtr<IDispatch> controls;
    if (control) control->get_Controls(controls.put());
    return controls;
}

}  // namespace

const CLSID CLSID_prpctlMenu{0x4DE5F516, 0x0402, 0x49F2, {0x93, 0xDB, 0xDE, 0xAC, 0x18, 0xCC, 0x28, 0x9F}};
const PageClass menuPageClass{&CLSID_prpctlMenu, description, &CreatePage};

MenuPage::MenuPage() : window_([this] { Changed(); }, [this] { return std::make_shared<ComPtr<MenuPage>>(this); }) {}

STDMETHODIMP MenuPage::SetPageSite(IPropertyPageSite* site) {
    site_ = ComPtr<IPropertyPageSite>(site);
    return S_OK;
}

STDMETHODIMP MenuPage::Activate(HWND parent, LPCRECT bounds, BOOL) {
    return Guard([&]() -> HRESULT {
        if (!bounds) return E_POINTER;
        if (window_.Handle()) return E_UNEXPECTED;
        Fill();
        window_.CreateIn(parent, *bounds);
        return S_OK;
    });
}

STDMETHODIMP MenuPage::Deactivate() {
    return Guard([&]() -> HRESULT {
        if (!window_.Handle()) return E_UNEXPECTED;
        const ComPtr<MenuPage> keep(this);
        window_.Destroy();
        return S_OK;
    });
}

STDMETHODIMP MenuPage::GetPageInfo(PROPPAGEINFO* info) {
    return Guard([&]() -> HRESULT {
        if (!info) return E_POINTER;
        const ULONG size = info->cb;
        *info = {};
        info->cb = size;
        info->pszTitle = TaskString(title);
        const Size wanted = MenuPageWindow::WantedSize();
        info->size = {wanted.width, wanted.height};
        return S_OK;
    });
}

STDMETHODIMP MenuPage::SetObjects(ULONG count, IUnknown** objects) {
    return Guard([&]() -> HRESULT {
        if (count > 0 && !objects) return E_POINTER;
        control_ = nullptr;
        if (count == 0) return S_OK;
        control_ = Query<_CMenus>(objects[0]);
        if (!control_) return E_NOINTERFACE;
        Fill();
        return S_OK;
    });
}

STDMETHODIMP MenuPage::Show(UINT command) {
    return Guard([&]() -> HRESULT {
        if (!window_.Handle()) return E_UNEXPECTED;
        ShowWindow(window_.Handle(), static_cast<int>(command));
        if (command == SW_SHOW || command == SW_SHOWNORMAL) window_.TakeFocus();
        return S_OK;
    });
}

STDMETHODIMP MenuPage::Move(LPCRECT bounds) {
    return Guard([&]() -> HRESULT {
        if (!bounds) return E_POINTER;
        if (!window_.Handle()) return E_UNEXPECTED;
        window_.MoveTo(*bounds);
        return S_OK;
    });
}

STDMETHODIMP MenuPage::IsPageDirty() { return dirty_ ? S_OK : S_FALSE; }

STDMETHODIMP MenuPage::Apply() {
    return Guard([&]() -> HRESULT {
        if (!control_) return E_UNEXPECTED;
        if (!dirty_) return S_OK;
        const ComPtr<MenuPage> keep(this);
        if (const auto list = ImageList()) StorePictures(list.get(), window_.Pictures());
        dirty_ = false;
        return S_OK;
    });
}

// The page's own text is all the help there is.
STDMETHODIMP MenuPage::Help(LPCOLESTR) { return S_FALSE; }

STDMETHODIMP MenuPage::TranslateAccelerator(MSG* message) {
    return Guard([&]() -> HRESULT {
        if (!message) return E_POINTER;
        const ComPtr<MenuPage> keep(this);
        return window_.Handle() && window_.TranslateKey(*message) ? S_OK : S_FALSE;
    });
}

STDMETHODIMP MenuPage::EditProperty(DISPID) {
    return Guard([&]() -> HRESULT {
        if (!window_.Handle()) return E_UNEXPECTED;
        window_.TakeFocus();
        return S_OK;
    });
}

ComPtr<IDispatch> MenuPage::ImageList() const {
    Bstr name;
    if (FAILED(control_->get_ImageList(name.put())) || name.View().empty()) return nullptr;
    const ComPtr<IDispatch> controls = ControlsOf(control_.get());
    try {
        return LateMember(controls.get(), L"Item").Get(controls.get(), {Variant(name.View())}).ToObject<IDispatch>();
    } catch (const RunTimeError&) {
        return nullptr;
    }
}

void MenuPage::Fill() {
    if (filled_ || !control_) return;
    std::vector<Text> keys;
    for (const MenuControl& menu : MenuControls(ControlsOf(control_.get()).get())) keys.push_back(menu.key);
    window_.Fill(keys, ReadPictures(ImageList().get()));
    filled_ = true;
}

void MenuPage::Changed() {
    dirty_ = true;
    const ComPtr<IPropertyPageSite> site = site_;
    if (site) site->OnStatusChange(PROPPAGESTATUS_DIRTY | PROPPAGESTATUS_VALIDATE);
}

}  // namespace qvx::menus
