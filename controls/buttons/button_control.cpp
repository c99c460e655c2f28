#include "controls/buttons/button_control.h"

#include "common/run_time_error.h"
#include "kit/resource.h"

namespace qvx::buttons {

namespace {

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

const PropertyTable& ButtonControl::Properties() {
    using C = ButtonControl;
    static const PropertyTable table = [] {
        Rows<C> rows;
        rows.Caption();
        rows.Font();
        rows.ForeColor();
        rows.BackColor();
        rows.BorderColor(colors::buttonFace);
        rows.FocusRect();
        rows.Long(
            u"Behavior", static_cast<std::int32_t>(Style::simpleHeavy),
            [](C& c) { return static_cast<std::int32_t>(c.button_.Look().behavior); },
            [](C& c, std::int32_t v) { c.button_.SetBehavior(StyleFromStore(v)); });
        rows.Bool(
            u"DropDown", false, [](C& c) { return c.button_.Look().dropDown; },
            [](C& c, bool v) { c.button_.SetDropDown(v); });
        rows.Enabled();
        return rows.Done();
    }();
    return table;
}

STDMETHODIMP ButtonControl::get_Behavior(::Style* result) {
    return Give(result, [&] { return static_cast<::Style>(button_.Look().behavior); });
}

STDMETHODIMP ButtonControl::put_Behavior(::Style value) {
    return Put(u"Behavior", [&] {
        if (value < bFlatSimple || value > bSimpleHeavy) {
            throw RunTimeError(errors::invalidPropertyValue, u"Invalid property value");
        }
        button_.SetBehavior(static_cast<Style>(value));
    });
}

STDMETHODIMP ButtonControl::get_DropDown(VARIANT_BOOL* result) {
    return Give(result, [&] { return button_.Look().dropDown; });
}

STDMETHODIMP ButtonControl::put_DropDown(VARIANT_BOOL value) {
    return Put(u"DropDown", [&] { button_.SetDropDown(value != VARIANT_FALSE); });
}

STDMETHODIMP ButtonControl::get_Focus(VARIANT_BOOL* result) {
    return Give(result, [&] { return button_.Focused(); });
}

STDMETHODIMP ButtonControl::put_Focus(VARIANT_BOOL value) {
    return Put(u"Focus", [&] { button_.SetFocused(value != VARIANT_FALSE); });
}

STDMETHODIMP ButtonControl::DRAWBUTTON(short state) {
    return Guard([&] {
        button_.DrawButton(state);
        AccessKeysChanged();
    });
}

}  // namespace qvx::buttons
