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
    return kept == places ? kept : std::int16_t{2};
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
            .Color(
                u"BackColor", DISPID_BACKCOLOR, colors::windowBackground, [](C& c) { return c.box_.BackColor(); },
                [](C& c, OleColor v) { c.box_.SetBackColor(v); })
            .Color(
                u"ForeColor", DISPID_FORECOLOR, colors::windowText, [](C& c) { return c.box_.ForeColor(); },
                [](C& c, OleColor v) { c.box_.SetForeColor(v); })
            .Font(
                u"Font", DISPID_FONT, [](C& c) { return c.Host().Font(); }, [](C& c) { return c.box_.Font(); },
                [](C& c, const FontSpec& v) { c.automation_.LoadFont(v); })
            .Long(
                u"BorderStyle", DISPID_BORDERSTYLE, 1,
                [](C& c) { return static_cast<std::int32_t>(c.box_.BorderStyle()); },
                [](C& c, std::int32_t v) { c.box_.SetBorderStyle(CheckedEnum<TextBorder>(v)); })
            .Long(
                u"Alignment", 1, 0, [](C& c) { return static_cast<std::int32_t>(c.box_.Alignment()); },
                [](C& c, std::int32_t v) { c.box_.SetAlignment(CheckedEnum<TextAlign>(v)); })
            .Long(
                u"MaxLength", 2, 0, [](C& c) { return c.box_.MaxLength(); },
                [](C& c, std::int32_t v) { c.box_.SetMaxLength(v); })
            .String(
                u"Text", DISPID_VALUE, [](C& c) { return c.Host().DisplayName(); },
                [](C& c) { return c.box_.GetText(); }, [](C& c, const Text& v) { c.box_.SetText(v); })
            .String(
                u"ToolTipText", 3, u"", [](C& c) { return c.box_.ToolTipText(); },
                [](C& c, const Text& v) { c.box_.SetToolTipText(v); })
            .Long(
                u"DataType", 4, data_type::none, [](C& c) { return c.rules_.dataType; },
                [](C& c, std::int32_t v) { c.rules_.dataType = v; })
            .Bool(
                u"AllowEmpty", 5, true, [](C& c) { return c.allowEmpty_; }, [](C& c, bool v) { c.allowEmpty_ = v; })
            .Bool(
                u"UseEnterKey", 6, false, [](C& c) { return c.useEnterKey_; }, [](C& c, bool v) { c.useEnterKey_ = v; })
            .Double(
                u"MinValue", 7, 0, [](C& c) { return c.rules_.minValue; },
                [](C& c, double v) { c.rules_.minValue = v; })
            .Double(
                u"MaxValue", 8, 0, [](C& c) { return c.rules_.maxValue; },
                [](C& c, double v) { c.rules_.maxValue = v; })
            .Bool(
                u"Enabled", DISPID_ENABLED, true, [](C& c) { return c.box_.Enabled(); },
                [](C& c, bool v) { c.box_.SetEnabled(v); })
            .Bool(
                u"Locked", 9, false, [](C& c) { return c.box_.Locked(); }, [](C& c, bool v) { c.box_.SetLocked(v); })
            .Bool(
                u"AutoSelection", 10, true, [](C& c) { return c.autoSelection_; },
                [](C& c, bool v) { c.autoSelection_ = v; })
            .Long(
                u"DecimalPlaces", 11, 2, [](C& c) { return c.decimalPlaces_; },
                [](C& c, std::int32_t v) { c.decimalPlaces_ = PlacesFromStore(v); })
            .Long(
                u"Appearance", DISPID_APPEARANCE, 1,
                [](C& c) { return static_cast<std::int32_t>(c.box_.Appearance()); },
                [](C& c, std::int32_t v) { c.box_.SetAppearance(CheckedEnum<TextDepth>(v)); })
            .Bool(
                u"Boundaries", 12, false, [](C& c) { return c.rules_.boundaries; },
                [](C& c, bool v) { c.rules_.boundaries = v; })
            .Done();
    return table;
}

// ---- Texts and types that belong together --------------------------------------------------------------------------

void TextEditControl::NormaliseInPlace() {
    box_.SetText(NormalisedInPlace(box_.GetText(), rules_.dataType, decimalPlaces_));
}

void TextEditControl::DataTypeChanged() {
    box_.SetTouchKeys(rules_.dataType == data_type::digits     ? TouchKeys::digits
                      : rules_.dataType == data_type::numerics ? TouchKeys::number
                                                               : TouchKeys::text);
}

STDMETHODIMP TextEditControl::put_Text(BSTR value) {
    return Put(u"Text", [&] { box_.SetText(NormalisedText(FromBstr(value), rules_.dataType, decimalPlaces_)); });
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
        const std::int16_t before = std::exchange(decimalPlaces_, value);
        Changed(u"DecimalPlaces");
        try {
            if (rules_.dataType == data_type::numerics) NormaliseInPlace();
        } catch (const std::bad_alloc&) {
            decimalPlaces_ = before;
            throw;
        }
    });
}

// ---- Members -------------------------------------------------------------------------------------------------------

template <class Result, class Value>
HRESULT TextEditControl::Get(Result* result, Value (TextBoxWindow::*member)() const) {
    return Give(result, [&] { return (box_.*member)(); });
}

template <class Parameter, class Given>
HRESULT TextEditControl::Put(TextView name, void (TextBoxWindow::*member)(Parameter), Given value) {
    return Put(name, [&] { (box_.*member)(FromHost<Parameter>(value)); });
}

STDMETHODIMP TextEditControl::get_Text(BSTR* result) { return Get(result, &TextBoxWindow::GetText); }

STDMETHODIMP TextEditControl::get_BackColor(OLE_COLOR* result) { return Get(result, &TextBoxWindow::BackColor); }
STDMETHODIMP TextEditControl::put_BackColor(OLE_COLOR value) {
    return Put(u"BackColor", &TextBoxWindow::SetBackColor, value);
}

STDMETHODIMP TextEditControl::get_ForeColor(OLE_COLOR* result) { return Get(result, &TextBoxWindow::ForeColor); }
STDMETHODIMP TextEditControl::put_ForeColor(OLE_COLOR value) {
    return Put(u"ForeColor", &TextBoxWindow::SetForeColor, value);
}

STDMETHODIMP TextEditControl::get_BorderStyle(TextBorderStyle* result) {
    return Get(result, &TextBoxWindow::BorderStyle);
}
STDMETHODIMP TextEditControl::put_BorderStyle(TextBorderStyle value) {
    return Put(u"BorderStyle", &TextBoxWindow::SetBorderStyle, value);
}

STDMETHODIMP TextEditControl::get_Alignment(TextAlignment* result) { return Get(result, &TextBoxWindow::Alignment); }
STDMETHODIMP TextEditControl::put_Alignment(TextAlignment value) {
    return Put(u"Alignment", &TextBoxWindow::SetAlignment, value);
}

STDMETHODIMP TextEditControl::get_MaxLength(long* result) { return Get(result, &TextBoxWindow::MaxLength); }
STDMETHODIMP TextEditControl::put_MaxLength(long value) {
    return Put(u"MaxLength", &TextBoxWindow::SetMaxLength, value);
}

STDMETHODIMP TextEditControl::get_ToolTipText(BSTR* result) { return Get(result, &TextBoxWindow::ToolTipText); }
STDMETHODIMP TextEditControl::put_ToolTipText(BSTR value) {
    return Put(u"ToolTipText", &TextBoxWindow::SetToolTipText, value);
}

STDMETHODIMP TextEditControl::get_Enabled(VARIANT_BOOL* result) { return Get(result, &TextBoxWindow::Enabled); }
STDMETHODIMP TextEditControl::put_Enabled(VARIANT_BOOL value) {
    return Put(u"Enabled", &TextBoxWindow::SetEnabled, value);
}

STDMETHODIMP TextEditControl::get_Locked(VARIANT_BOOL* result) { return Get(result, &TextBoxWindow::Locked); }
STDMETHODIMP TextEditControl::put_Locked(VARIANT_BOOL value) {
    return Put(u"Locked", &TextBoxWindow::SetLocked, value);
}

STDMETHODIMP TextEditControl::get_Appearance(TextAppearance* result) { return Get(result, &TextBoxWindow::Appearance); }
STDMETHODIMP TextEditControl::put_Appearance(TextAppearance value) {
    return Put(u"Appearance", &TextBoxWindow::SetAppearance, value);
}

STDMETHODIMP TextEditControl::get_DataType(dtaType* result) {
    return Give(result, [&] { return rules_.dataType; });
}

STDMETHODIMP TextEditControl::get_AllowEmpty(VARIANT_BOOL* result) {
    return Give(result, [&] { return allowEmpty_; });
}
STDMETHODIMP TextEditControl::put_AllowEmpty(VARIANT_BOOL value) {
    return Put(u"AllowEmpty", [&] { allowEmpty_ = value != VARIANT_FALSE; });
}

STDMETHODIMP TextEditControl::get_UseEnterKey(VARIANT_BOOL* result) {
    return Give(result, [&] { return useEnterKey_; });
}
STDMETHODIMP TextEditControl::put_UseEnterKey(VARIANT_BOOL value) {
    return Put(u"UseEnterKey", [&] { useEnterKey_ = value != VARIANT_FALSE; });
}

STDMETHODIMP TextEditControl::get_MinValue(double* result) {
    return Give(result, [&] { return rules_.minValue; });
}
STDMETHODIMP TextEditControl::put_MinValue(double value) {
    return Put(u"MinValue", [&] { rules_.minValue = value; });
}

STDMETHODIMP TextEditControl::get_MaxValue(double* result) {
    return Give(result, [&] { return rules_.maxValue; });
}
STDMETHODIMP TextEditControl::put_MaxValue(double value) {
    return Put(u"MaxValue", [&] { rules_.maxValue = value; });
}

STDMETHODIMP TextEditControl::get_AutoSelection(VARIANT_BOOL* result) {
    return Give(result, [&] { return autoSelection_; });
}
STDMETHODIMP TextEditControl::put_AutoSelection(VARIANT_BOOL value) {
    return Put(u"AutoSelection", [&] { autoSelection_ = value != VARIANT_FALSE; });
}

STDMETHODIMP TextEditControl::get_DecimalPlaces(short* result) {
    return Give(result, [&] { return decimalPlaces_; });
}

STDMETHODIMP TextEditControl::get_Boundaries(VARIANT_BOOL* result) {
    return Give(result, [&] { return rules_.boundaries; });
}
STDMETHODIMP TextEditControl::put_Boundaries(VARIANT_BOOL value) {
    return Put(u"Boundaries", [&] { rules_.boundaries = value != VARIANT_FALSE; });
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
