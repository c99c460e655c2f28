#include "controls/menus/menu_page_object.h"

#include "com/bstr.h"
#include "com/late_bound.h"

namespace qvx::menus {

namespace {

constexpr PageLook look{L"Menu Pictures", {330, 210}};
constexpr wchar_t description[] = L"The pictures of a form's menus";

HRESULT CreatePage(REFIID iid, void** object) { return MakeObject<MenuPage>()->QueryInterface(iid, object); }

ComPtr<IDispatch> ControlsOf(_CMenus* control) {
    ComPtr<IDispatch> controls;
    if (control) control->get_Controls(controls.put());
    return controls;
}

}  // namespace

const CLSID CLSID_prpctlMenu{0x4DE5F516, 0x0402, 0x49F2, {0x93, 0xDB, 0xDE, 0xAC, 0x18, 0xCC, 0x28, 0x9F}};
const PageClass menuPageClass{&CLSID_prpctlMenu, description, &CreatePage};

MenuPage::MenuPage() : PropertyPage(look), window_(*this) {}

bool MenuPage::Take(IUnknown* control) {
    control_ = Query<_CMenus>(control);
    return control_ != nullptr;
}

void MenuPage::Store() {
    if (const auto list = ImageList()) StorePictures(list.get(), window_.Pictures());
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
    std::vector<Text> keys;
    for (const MenuControl& menu : MenuControls(ControlsOf(control_.get()).get())) keys.push_back(menu.key);
    window_.Fill(keys, ReadPictures(ImageList().get()));
}

}  // namespace qvx::menus
