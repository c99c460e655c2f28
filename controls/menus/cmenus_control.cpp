#include "controls/menus/cmenus_control.h"

#include "controls/menus/menu_page_object.h"
#include "drawing/block_picture.h"
#include "kit/resource.h"

namespace qvx::menus {

namespace {
constexpr Size menusSize{220, 220};
}

const ControlClass CMenusControl::classInfo{&CLSID_CMenus,
                                            &DIID___CMenus,
                                            L"CMenus",
                                            L"Shows pictures beside the items of its form's menus",
                                            QVX_TOOLBOX_CMENUS,
                                            invisibleMiscStatus,
                                            &CreateControl<CMenusControl>};

CMenusControl::CMenusControl() : InvisibleControl(classInfo, menusSize), images_([this] { return Read(); }) {}

const PropertyTable& CMenusControl::Properties() {
    using C = CMenusControl;
    static const PropertyTable table =
        PropertyRows<C>()
            .String(
                u"ImageList", u"", [](C& c) { return c.imageList_; }, [](C& c, Text v) { c.Take(std::move(v)); })
            .Done();
    return table;
}

STDMETHODIMP CMenusControl::get_ImageList(BSTR* result) {
    return Give(result, [&] { return imageList_; });
}

STDMETHODIMP CMenusControl::put_ImageList(BSTR value) {
    return Put(u"ImageList", [&] { Take(Text(FromBstr(value))); });
}

STDMETHODIMP CMenusControl::get_Controls(IDispatch** result) {
    return Give(result, [&] { return Host().Controls().detach(); });
}

STDMETHODIMP CMenusControl::get_OWNParent(IDispatch** result) {
    return Give(result, [&] { return Host().Form().detach(); });
}

std::span<const CLSID> CMenusControl::PropertyPages() const {
    static const CLSID pages[] = {CLSID_prpctlMenu};
    return pages;
}

void CMenusControl::Take(Text imageList) {
    imageList_ = std::move(imageList);
    images_.SourceChanged();
}

// The host may release the control during the calls.
MenuSource CMenusControl::Read() {
    const auto keep = KeepAlive();
    MenuSource source;
    source.controls = MenuControls(Host().Controls().get());
    if (!imageList_.empty()) source.pictures = ReadPictures(Host().ControlNamed(imageList_).get());
    return source;
}

void CMenusControl::Follow(bool working) {
    const HWND form = working ? Host().FormWindow(PlacedWindow()) : nullptr;
    if (form == images_.Form()) return;
    images_.End();
    if (form) images_.Start(form);
}

// A menu of three items with pictures.
void CMenusControl::DrawPicture(Surface& surface, const Rect& area) {
    constexpr OleColor bar = Rgb(0, 0, 128);
    static const PictureBlock menu[] = {
        {{2, 2, 13, 4}, bar},
        {{3, 5, 5, 7}, Rgb(200, 40, 40)},
        {{6, 6, 12, 7}, colors::buttonText},
        {{3, 8, 5, 10}, Rgb(40, 150, 60)},
        {{6, 9, 12, 10}, colors::buttonText},
        {{3, 11, 5, 13}, Rgb(40, 80, 200)},
        {{6, 12, 12, 13}, colors::buttonText},
    };
    DrawBlockPicture(surface, area, 15, menu);
}

}  // namespace qvx::menus
