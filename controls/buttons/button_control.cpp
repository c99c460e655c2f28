#include "controls/buttons/button_control.h"

#include <olectl.h>

#include <utility>

#include "com/bstr.h"
#include "com/guard.h"
#include "com/variant.h"
#include "common/about_dialog.h"
#include "common/keys.h"
#include "common/run_time_error.h"
#include "controls/buttons/access_key.h"
#include "server/resource.h"

namespace qvx::buttons {

namespace {

template <typename T, typename Value>
HRESULT Give(T* result, Value value) {
    if (!result) return E_POINTER;
    *result = value;
    return S_OK;
}

bool FromVariantBool(VARIANT_BOOL value) { return value != VARIANT_FALSE; }

Style StyleFromStore(std::int32_t value) {
    return value >= 0 && value <= static_cast<int>(Style::simpleHeavy) ? static_cast<Style>(value) : Style::simpleHeavy;
}

}  // namespace

const ControlClass ButtonControl::classInfo{&CLSID_Button,
                                            &DIID___Button,
                                            L"Button",
                                            L"Qvx.Button",
                                            QVX_TOOLBOX_BUTTON,
                                            usualMiscStatus | OLEMISC_ACTSLIKEBUTTON,
                                            &CreateControl<ButtonControl>};

ButtonControl::ButtonControl()
    : Control(classInfo), font_([this] {
          button_.SetFont(font_.Value());
          Changed(u"Font");
      }) {
    button_.onClick = [this] { Fire(DISPID_CLICK); };
}

Text ButtonControl::DefaultCaption() const { return Host().DisplayName(); }

const PropertyTable& ButtonControl::Properties() {
    using C = ButtonControl;
    static const PropertyTable table =
        PropertyRows<C>()
            .String(
                u"Caption", DISPID_CAPTION, [](C& c) { return c.DefaultCaption(); },
                [](C& c) { return c.button_.Look().caption; }, [](C& c, Text v) { c.button_.SetCaption(std::move(v)); })
            .Font(
                u"Font", DISPID_FONT, [](C& c) { return c.Host().Font(); }, [](C& c) { return c.font_.Value(); },
                [](C& c, const FontSpec& v) {
                    c.font_.Load(v);
                    c.button_.SetFont(v);
                })
            .Color(
                u"ForeColor", DISPID_FORECOLOR, colors::buttonText, [](C& c) { return c.button_.Look().foreColor; },
                [](C& c, OleColor v) { c.button_.SetForeColor(v); })
            .Color(
                u"BackColor", DISPID_BACKCOLOR, colors::buttonFace, [](C& c) { return c.button_.Look().backColor; },
                [](C& c, OleColor v) { c.button_.SetBackColor(v); })
            .Color(
                u"BorderColor", DISPID_BORDERCOLOR, colors::buttonFace,
                [](C& c) { return c.button_.Look().borderColor; },
                [](C& c, OleColor v) { c.button_.SetBorderColor(v); })
            .Bool(
                u"FocusRect", 1, true, [](C& c) { return c.button_.Look().focusRect; },
                [](C& c, bool v) { c.button_.SetFocusRect(v); })
            .Long(
                u"Behavior", 2, static_cast<std::int32_t>(Style::simpleHeavy),
                [](C& c) { return static_cast<std::int32_t>(c.button_.Look().behavior); },
                [](C& c, std::int32_t v) { c.button_.SetBehavior(StyleFromStore(v)); })
            .Bool(
                u"DropDown", 3, false, [](C& c) { return c.button_.Look().dropDown; },
                [](C& c, bool v) { c.button_.SetDropDown(v); })
            .Bool(
                u"Enabled", DISPID_ENABLED, true, [](C& c) { return c.button_.Look().enabled; },
                [](C& c, bool v) { c.button_.SetEnabled(v); })
            .Done();
    return table;
}

template <typename Apply>
HRESULT ButtonControl::Set(const char16_t* name, Apply apply) {
    return Guard([&] {
        apply();
        Changed(name);
    });
}

STDMETHODIMP ButtonControl::get_Caption(BSTR* result) {
    return Guard([&] { return Give(result, NewBstr(button_.Look().caption)); });
}

STDMETHODIMP ButtonControl::put_Caption(BSTR value) {
    return Set(u"Caption", [&] {
        button_.SetCaption(Text(FromBstr(value)));
        AccessKeysChanged();
    });
}

STDMETHODIMP ButtonControl::get_Font(IFontDisp** result) {
    return Guard([&] { return Give(result, font_.Get()); });
}

STDMETHODIMP ButtonControl::put_Font(IFontDisp* value) {
    return Guard([&] { font_.Set(value, true); });
}

STDMETHODIMP ButtonControl::putref_Font(IFontDisp* value) {
    return Guard([&] { font_.Set(value, false); });
}

STDMETHODIMP ButtonControl::get_ForeColor(OLE_COLOR* result) { return Give(result, button_.Look().foreColor); }

STDMETHODIMP ButtonControl::put_ForeColor(OLE_COLOR value) {
    return Set(u"ForeColor", [&] { button_.SetForeColor(value); });
}

STDMETHODIMP ButtonControl::get_BackColor(OLE_COLOR* result) { return Give(result, button_.Look().backColor); }

STDMETHODIMP ButtonControl::put_BackColor(OLE_COLOR value) {
    return Set(u"BackColor", [&] { button_.SetBackColor(value); });
}

STDMETHODIMP ButtonControl::get_BorderColor(OLE_COLOR* result) { return Give(result, button_.Look().borderColor); }

STDMETHODIMP ButtonControl::put_BorderColor(OLE_COLOR value) {
    return Set(u"BorderColor", [&] { button_.SetBorderColor(value); });
}

STDMETHODIMP ButtonControl::get_FocusRect(VARIANT_BOOL* result) {
    return Give(result, ToVariantBool(button_.Look().focusRect));
}

STDMETHODIMP ButtonControl::put_FocusRect(VARIANT_BOOL value) {
    return Set(u"FocusRect", [&] { button_.SetFocusRect(FromVariantBool(value)); });
}

STDMETHODIMP ButtonControl::get_Behavior(::Style* result) {
    return Give(result, static_cast<::Style>(button_.Look().behavior));
}

STDMETHODIMP ButtonControl::put_Behavior(::Style value) {
    return Set(u"Behavior", [&] {
        if (value < bFlatSimple || value > bSimpleHeavy) {
            throw RunTimeError(errors::invalidPropertyValue, u"Invalid property value");
        }
        button_.SetBehavior(static_cast<Style>(value));
    });
}

STDMETHODIMP ButtonControl::get_DropDown(VARIANT_BOOL* result) {
    return Give(result, ToVariantBool(button_.Look().dropDown));
}

STDMETHODIMP ButtonControl::put_DropDown(VARIANT_BOOL value) {
    return Set(u"DropDown", [&] { button_.SetDropDown(FromVariantBool(value)); });
}

STDMETHODIMP ButtonControl::get_Enabled(VARIANT_BOOL* result) {
    return Give(result, ToVariantBool(button_.Look().enabled));
}

STDMETHODIMP ButtonControl::put_Enabled(VARIANT_BOOL value) {
    return Set(u"Enabled", [&] {
        button_.SetEnabled(FromVariantBool(value));
        AccessKeysChanged();
    });
}

STDMETHODIMP ButtonControl::put_Value(VARIANT_BOOL value) {
    return Set(u"Value", [&] {
        if (!UserMode()) {
            throw RunTimeError(errors::setNotPermitted, u"Set not permitted");
        }
        button_.SetValue(FromVariantBool(value));
    });
}

STDMETHODIMP ButtonControl::get_Focus(VARIANT_BOOL* result) { return Give(result, ToVariantBool(button_.Focused())); }

STDMETHODIMP ButtonControl::put_Focus(VARIANT_BOOL value) {
    return Set(u"Focus", [&] { button_.SetFocused(FromVariantBool(value)); });
}

STDMETHODIMP ButtonControl::get_hWnd(long* result) {
    return Guard([&] { return Give(result, WindowNumber()); });
}

STDMETHODIMP ButtonControl::get_hDC(long* result) {
    return Guard([&] { return Give(result, DeviceContextNumber()); });
}

STDMETHODIMP ButtonControl::DRAWBUTTON(short state) {
    return Guard([&] {
        button_.DrawButton(state);
        AccessKeysChanged();
    });
}

STDMETHODIMP ButtonControl::DRAWFocus() {
    return Guard([&] { button_.DrawFocus(); });
}

STDMETHODIMP ButtonControl::ShowAbout() {
    return Guard([&] {
        const DialogScope dialog(*this);
        ShowAboutBox(WindowHandle());
    });
}

std::optional<LRESULT> ButtonControl::OnWindowMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_SYSCOLORCHANGE || message == WM_THEMECHANGED) {
        Invalidate();
        return std::nullopt;
    }
    if (message == WM_CAPTURECHANGED || (message == WM_GETOBJECT && UserMode())) {
        return button_.HandleMessage(message, wParam, lParam);
    }
    // The host is asked only for what its answer matters to.
    if (!ButtonElement::IsInput(message) || !TakesInput()) {
        return std::nullopt;
    }
    return button_.HandleMessage(message, wParam, lParam);
}

void ButtonControl::OnAfterRead() { ambientFont_ = Host().Font(); }

void ButtonControl::OnAmbientChange(DISPID property) {
    if (property == DISPID_AMBIENT_FONT) {
        // A font of the button's own stays.
        const FontSpec font = Host().Font();
        if (std::exchange(ambientFont_, font) == font_.Value()) {
            font_.Load(font);
            button_.SetFont(font);
        }
    }
    Invalidate();
}

void ButtonControl::DrawControl(Surface& surface, const Rect&) { button_.Paint(surface); }

Text ButtonControl::AccessKeys() {
    const char16_t key = AccessKey(button_.Look().caption);
    return key && button_.Look().enabled ? Text(1, key) : Text();
}

// A designer only looks at its controls, and a host whose program is halted wants no input taken.
bool ButtonControl::TakesInput() const { return UserMode() && !Host().UiDead(); }

void ButtonControl::OnAccessKey(int key) {
    const auto pressable = [this] { return button_.Look().enabled && TakesInput(); };
    if (!pressable()) {
        return;
    }
    if (key != keys::enter && key != keys::escape) {
        TakeFocus();
        // The handlers of who lost the focus may have disabled the button or let go of it.
        if (!pressable()) {
            return;
        }
    }
    button_.AccessKeyPress(key);
}

bool ButtonControl::WantsKey(const MSG& message) {
    return (message.message == WM_KEYDOWN && ButtonLogic::Wants(static_cast<int>(message.wParam), ShiftState())) ||
           (message.message == WM_KEYUP && message.wParam == VK_SPACE);
}

}  // namespace qvx::buttons
