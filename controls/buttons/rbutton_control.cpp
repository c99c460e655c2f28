#include "controls/buttons/rbutton_control.h"

#include "com/late_bound.h"
#include "kit/resource.h"
#include "win/dpi.h"

namespace qvx::buttons {

const ControlClass RButtonControl::classInfo{&CLSID_RButton,
                                             &DIID___RButton,
                                             L"RButton",
                                             L"Qvx.RButton",
                                             QVX_TOOLBOX_RBUTTON,
                                             usualMiscStatus | OLEMISC_ACTSLIKEBUTTON,
                                             &CreateControl<RButtonControl>};

RButtonControl::RButtonControl() : PushControl(classInfo) {
    button_.isActive = [this] { return UserMode() && Host().IsActiveControl(WindowHandle()); };
}

const PropertyTable& RButtonControl::Properties() {
    using C = RButtonControl;
    static const PropertyTable table = [] {
        Rows<C> rows;
        const auto outline = [&rows](const char16_t* key, OleColor fallback, OleColor RButtonLook::*color) {
            rows.Color(
                key, fallback, [=](C& c) { return c.button_.Look().*color; },
                [=](C& c, OleColor v) { c.button_.SetOutline(color, v); });
        };
        const RButtonLook look;
        rows.Caption();
        rows.Bool(
            u"Value", false, [](C& c) { return c.value_; }, [](C& c, bool v) { c.value_ = v; });
        rows.BorderColor(look.borderColor);
        outline(u"UpTopColor", look.upTopColor, &RButtonLook::upTopColor);
        outline(u"UpBottomColor", look.upBottomColor, &RButtonLook::upBottomColor);
        outline(u"DownTopColor", look.downTopColor, &RButtonLook::downTopColor);
        outline(u"DownBottomColor", look.downBottomColor, &RButtonLook::downBottomColor);
        outline(u"MaskColor", look.maskColor, &RButtonLook::maskColor);
        rows.ForeColor();
        rows.BackColor();
        rows.Enabled();
        rows.FocusRect();
        rows.Font();
        return rows.Done();
    }();
    return table;
}

HRESULT RButtonControl::SetOutline(const char16_t* name, OleColor RButtonLook::*outline, OLE_COLOR value) {
    return Put(name, [&] { button_.SetOutline(outline, value); });
}

STDMETHODIMP RButtonControl::put_UpTopColor(OLE_COLOR value) {
    return SetOutline(u"UpTopColor", &RButtonLook::upTopColor, value);
}

STDMETHODIMP RButtonControl::put_UpBottomColor(OLE_COLOR value) {
    return SetOutline(u"UpBottomColor", &RButtonLook::upBottomColor, value);
}

STDMETHODIMP RButtonControl::put_DownTopColor(OLE_COLOR value) {
    return SetOutline(u"DownTopColor", &RButtonLook::downTopColor, value);
}

STDMETHODIMP RButtonControl::put_DownBottomColor(OLE_COLOR value) {
    return SetOutline(u"DownBottomColor", &RButtonLook::downBottomColor, value);
}

STDMETHODIMP RButtonControl::put_MaskColor(OLE_COLOR value) {
    return SetOutline(u"MaskColor", &RButtonLook::maskColor, value);
}

STDMETHODIMP RButtonControl::get_Value(VARIANT_BOOL* result) {
    return Give(result, [&] {
        RequireValueReadable(UserMode());
        return value_;
    });
}

STDMETHODIMP RButtonControl::SetFocus() {
    return Guard([&] {
        const auto keep = KeepAlive();
        if (InPlaceActive() && TakesInput() && button_.Look().enabled) {
            TakeFocus();
        }
        button_.LetGo();
    });
}

STDMETHODIMP RButtonControl::RemoveFocus() {
    return Guard([&] { button_.LetGo(); });
}

void RButtonControl::OnAmbientChange(DISPID property) {
    const auto keep = KeepAlive();
    PushControl::OnAmbientChange(property);
    // The call goes through the form, whose object around the control may have a RemoveFocus of its own; failures there
    // are the form's.
    try {
        const ComPtr<IDispatch> outer = Host().ControlNamed(Host().DisplayName());
        LateMember(outer.get(), L"RemoveFocus").Get(outer.get());
    } catch (const RunTimeError&) {
        button_.LetGo();
    }
}

UniqueRegion RButtonControl::WindowShape(Size size) const {
    const Size corner = RButtonCorner(WindowDpi(WindowHandle()));
    return UniqueRegion(CreateRoundRectRgn(0, 0, size.width, size.height, corner.width, corner.height));
}

}  // namespace qvx::buttons
