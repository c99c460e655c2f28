#include "controls/decor/cmenus_control.h"

#include "controls/decor/menu_page_object.h"
#include "server/resource.h"

namespace qvx::decor {

namespace {
constexpr Size twips{220, 220};
}

const ControlClass CMenusControl::classInfo{&CLSID_CMenus,
                                            &DIID___CMenus,
                                            L"CMenus",
                                            L"Qvx.CMenus",
                                            QVX_TOOLBOX_CMENUS,
                                            invisibleMiscStatus,
                                            &CreateControl<CMenusControl>};

CMenusControl::CMenusControl() : InvisibleControl(classInfo, twips), images_([this] { return Read(); }) {}

const PropertyTable& CMenusControl::Properties() {
    using C = CMenusControl;
    static const PropertyTable table =
        PropertyRows<C>()
            .String(
                u"ImageList", 1, u"", [](C& c) { return c.imageList_; }, [](C& c, Text v) { c.Take(std::move(v)); })
            .Done();
    return table;
}

STDMETHODIMP CMenusControl::get_ImageList(BSTR* result) {
    return Guard([&] { *Required(result) = NewBstr(imageList_); });
}

STDMETHODIMP CMenusControl::put_ImageList(BSTR value) {
    return Put(u"ImageList", [&] { Take(Text(FromBstr(value))); });
}

STDMETHODIMP CMenusControl::get_Controls(IDispatch** result) {
    return Guard([&] { *Required(result) = Host().Controls().detach(); });
}

STDMETHODIMP CMenusControl::get_OWNParent(IDispatch** result) {
    return Guard([&] { *Required(result) = Host().Form().detach(); });
}

std::span<const CLSID> CMenusControl::PropertyPages() const {
    static const CLSID pages[] = {CLSID_prpctlMenu};
    return pages;
}

void CMenusControl::Take(Text imageList) {
    imageList_ = std::move(imageList);
    images_.SourceChanged();
}

// The host may let go of the control while it is asked.
MenuSource CMenusControl::Read() {
    const auto keep = KeepAlive();
    MenuSource source;
    source.controls = MenuControls(Host().Controls().get());
    if (!imageList_.empty()) source.pictures = ReadPictures(Host().ControlNamed(imageList_).get());
    return source;
}

void CMenusControl::Follow(bool working) {
    const HWND form = working ? Host().FormWindow(InPlaceActive() ? WindowHandle() : nullptr) : nullptr;
    if (form == images_.Form()) return;
    images_.End();
    if (form) images_.Start(form);
}

// A menu of three items with pictures, on a field of so many steps each way.
void CMenusControl::DrawPicture(Surface& surface, const Rect& area) {
    constexpr int steps = 15;
    const auto fill = [&](int left, int top, int right, int bottom, OleColor color) {
        const auto x = [&](int step) { return area.left + ScaleRounded(step, area.Width(), steps); };
        const auto y = [&](int step) { return area.top + ScaleRounded(step, area.Height(), steps); };
        surface.FillRect({x(left), y(top), x(right), y(bottom)}, color);
    };
    surface.FillRect(area, colors::buttonFace);
    surface.DrawEdge(area, edge::raised, edge::allSides);
    constexpr OleColor pictures[] = {Rgb(200, 40, 40), Rgb(40, 150, 60), Rgb(40, 80, 200)};
    fill(2, 2, 13, 4, Rgb(0, 0, 128));
    for (int i = 0; i < 3; ++i) {
        fill(3, 5 + 3 * i, 5, 7 + 3 * i, pictures[i]);
        fill(6, 6 + 3 * i, 12, 7 + 3 * i, colors::buttonText);
    }
}

}  // namespace qvx::decor
