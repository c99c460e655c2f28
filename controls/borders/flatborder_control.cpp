#include "controls/borders/flatborder_control.h"

#include "kit/resource.h"

namespace qvx::borders {

namespace {
constexpr Size borderSize{180, 225};
}

const ControlClass FlatBorderControl::classInfo{&CLSID_FlatBorder,
                                                &DIID___FlatBorder,
                                                L"FlatBorder",
                                                L"Paints a flat border in two colours around its container",
                                                QVX_TOOLBOX_FLATBORDER,
                                                invisibleMiscStatus,
                                                &CreateControl<FlatBorderControl>};

FlatBorderControl::FlatBorderControl() : InvisibleControl(classInfo, borderSize) {}

const PropertyTable& FlatBorderControl::Properties() {
    using C = FlatBorderControl;
    static const PropertyTable table =
        PropertyRows<C>()
            .Color(
                u"InnerBorder", BorderColors{}.inner, [](C& c) { return c.colors_.inner; },
                [](C& c, OleColor v) { c.Take(&BorderColors::inner, v); })
            .Color(
                u"OuterBorder", BorderColors{}.outer, [](C& c) { return c.colors_.outer; },
                [](C& c, OleColor v) { c.Take(&BorderColors::outer, v); })
            .Done();
    return table;
}

STDMETHODIMP FlatBorderControl::get_InnerBorder(OLE_COLOR* result) {
    return Give(result, [&] { return colors_.inner; });
}

STDMETHODIMP FlatBorderControl::put_InnerBorder(OLE_COLOR value) {
    return Put(u"InnerBorder", [&] { Take(&BorderColors::inner, value); });
}

STDMETHODIMP FlatBorderControl::get_OuterBorder(OLE_COLOR* result) {
    return Give(result, [&] { return colors_.outer; });
}

STDMETHODIMP FlatBorderControl::put_OuterBorder(OLE_COLOR value) {
    return Put(u"OuterBorder", [&] { Take(&BorderColors::outer, value); });
}

void FlatBorderControl::Take(OleColor BorderColors::*color, OleColor value) {
    colors_.*color = value;
    border_.SetColors(colors_);
}

void FlatBorderControl::Follow(bool working) {
    const HWND window = working ? Host().ContainerWindow(PlacedWindow()) : nullptr;
    if (window == border_.Window()) return;
    border_.End();
    if (window) border_.Start(window, colors_);
}

void FlatBorderControl::DrawPicture(Surface& surface, const Rect& area) {
    surface.FillRect(area, colors::buttonFace);
    for (const BorderBand& band : BorderBands(colors_)) {
        for (int i = 0; i < band.width; ++i) surface.FrameRect(area.Inflated(-i, -i), band.color);
    }
}

}  // namespace qvx::borders
