// The TextEdit control's members and its persistence.
#include <olectl.h>

#include <new>
#include <utility>

#include "com/bstr.h"
#include "controls/textedit/textedit_control.h"
#include "dialogs/about_dialog.h"
#include "kit/resource.h"

namespace qvx::textedit {
namespace {

// A value that does not fit in 16 bits is treated like one that is not a number: the default is used. Negative places
// are kept, as the setter keeps them.
std::int16_t PlacesFromStore(std::int32_t places) {
    const auto kept = static_cast<std::int16_t>(places);
    return kept == places ? kept : defaultPlaces;
}

}  // namespace

const ControlClass TextEditControl::classInfo{&CLSID_TextEdit,
                                              &DIID___TextEdit,
                                              L"TextEdit",
                                              L"Qvx TextEdit Control",
                                              QVX_TOOLBOX_TEXTEDIT,
                                              usualMiscStatus,
                                              &CreateControl<TextEditControl>};

TextEditControl::TextEditControl() : Control(classInfo), automation_(box_, [this] { Changed(u"Font"); }) {}

const PropertyTable& TextEditControl::Properties() {
    using C = TextEditControl;
    static const PropertyTable table =
        PropertyRows<C>()
            .Member(u"BackColor", TextBoxLook{}.backColor, &TextBoxWindow::BackColor, &TextBoxWindow::SetBackColor)
            .Member(u"ForeColor", TextBoxLook{}.foreColor, &TextBoxWindow::ForeColor, &TextBoxWindow::SetForeColor)
            .Font(
                u"Font", [](C& c) { return c.Host().Font(); }, [](C& c) { return c.box_.Font(); },
                [](C& c, const FontSpec& v) { c.automation_.LoadFont(v); })
            .Member(u"BorderStyle", TextBoxLook{}.border, &TextBoxWindow::BorderStyle, &TextBoxWindow::SetBorderStyle)
            .Member(u"Alignment", TextBoxLook{}.align, &TextBoxWindow::Alignment, &TextBoxWindow::SetAlignment)
            .Member(u"MaxLength", 0, &TextBoxWindow::MaxLength, &TextBoxWindow::SetMaxLength)
            .String(
                u"Text", [](C& c) { return c.Host().DisplayName(); }, [](C& c) { return c.box_.GetText(); },
                [](C& c, const Text& v) { c.box_.SetText(v); })
            .Member(u"ToolTipText", {}, &TextBoxWindow::ToolTipText, &TextBoxWindow::SetToolTipText)
            .Field(u"DataType", &KeyRules::dataType)
            .Field(u"AllowEmpty", &Settings::allowEmpty)
            .Field(u"UseEnterKey", &Settings::useEnterKey)
            .Field(u"MinValue", &KeyRules::minValue)
            .Field(u"MaxValue", &KeyRules::maxValue)
            .Member(u"Enabled", true, &TextBoxWindow::Enabled, &TextBoxWindow::SetEnabled)
            .Member(u"Locked", false, &TextBoxWindow::Locked, &TextBoxWindow::SetLocked)
            .Field(u"AutoSelection", &Settings::autoSelection)
            .Long(
                u"DecimalPlaces", defaultPlaces, [](C& c) { return c.settings_.decimalPlaces; },
                [](C& c, std::int32_t v) { c.settings_.decimalPlaces = PlacesFromStore(v); })
            .Member(u"Appearance", TextBoxLook{}.depth, &TextBoxWindow::Appearance, &TextBoxWindow::SetAppearance)
            .Field(u"Boundaries", &KeyRules::boundaries)
            .Done();
    return table;
}

// ---- Texts and types that belong together --------------------------------------------------------------------------

void TextEditControl::NormaliseInPlace() {
    box_.SetText(NormalisedInPlace(box_.GetText(), rules_.dataType, settings_.decimalPlaces));
}

void TextEditControl::DataTypeChanged() {
    box_.SetTouchKeys(rules_.dataType == data_type::digits     ? TouchKeys::digits
                      : rules_.dataType == data_type::numerics ? TouchKeys::number
                                                               : TouchKeys::text);
}

STDMETHODIMP TextEditControl::put_Text(BSTR value) {
    return Put(u"Text",
               [&] { box_.SetText(NormalisedText(FromBstr(value), rules_.dataType, settings_.decimalPlaces)); });
}

STDMETHODIMP TextEditControl::put_DataType(dtaType value) {
    return Guard([&] {
        const auto keep = KeepAlive();
        const std::int32_t before = std::exchange(rules_.dataType, static_cast<std::int32_t>(value));
        DataTypeChanged();
        Changed(u"DataType");
        try {
            if (rules_.dataType != data_type::none) NormaliseInPlace();
        } catch (const std::bad_alloc&) {
            rules_.dataType = before;
            DataTypeChanged();
            throw;
        }
    });
}

STDMETHODIMP TextEditControl::put_DecimalPlaces(short value) {
    return Guard([&] {
        const auto keep = KeepAlive();
        const std::int16_t before = std::exchange(settings_.decimalPlaces, value);
        Changed(u"DecimalPlaces");
        try {
            if (rules_.dataType == data_type::numerics) NormaliseInPlace();
        } catch (const std::bad_alloc&) {
            settings_.decimalPlaces = before;
            throw;
        }
    });
}

// ---- Members -------------------------------------------------------------------------------------------------------

STDMETHODIMP TextEditControl::get_Text(BSTR* result) { return GetMember(result, &TextBoxWindow::GetText); }

STDMETHODIMP TextEditControl::get_DataType(dtaType* result) {
    return Give(result, [&] { return rules_.dataType; });
}

STDMETHODIMP TextEditControl::get_DecimalPlaces(short* result) {
    return Give(result, [&] { return settings_.decimalPlaces; });
}

STDMETHODIMP TextEditControl::get_Font(IFontDisp** result) {
    return Give(result, [&] { return automation_.Font().Get(); });
}
STDMETHODIMP TextEditControl::put_Font(IFontDisp* value) {
    return Guard([&] { automation_.Font().Set(value, true); });
}
STDMETHODIMP TextEditControl::putref_Font(IFontDisp* value) {
    return Guard([&] { automation_.Font().Set(value, false); });
}

STDMETHODIMP TextEditControl::get_TextBox(IDispatch** result) {
    return Give(result, [&] { return automation_.Get(); });
}

STDMETHODIMP TextEditControl::get_hDC(long* result) {
    return Give(result, [&] { return DeviceContextNumber(); });
}

STDMETHODIMP TextEditControl::get_hWnd(long* result) {
    return Give(result, [&] { return WindowNumber(); });
}

STDMETHODIMP TextEditControl::ShowAbout() {
    return Guard([&] {
        const DialogScope dialog(*this);
        ShowAboutBox(WindowHandle());
    });
}

}  // namespace qvx::textedit
