// The TextEdit control: a text box for data entry that checks typed and remaining text.
#pragma once

#include <windows.h>

#include "Qvx.h"
#include "com/members.h"
#include "controls/textedit/key_filter.h"
#include "kit/control.h"
#include "widgets/textbox/text_box_object.h"

namespace qvx::textedit {

// Decimal places of a box that was not given another number.
constexpr std::int16_t defaultPlaces = 2;

class TextEditControl final : public Control<_TextEdit>,
                              private MemberAccess<TextEditControl>,
                              private TextBoxListener {
  public:
    static const ControlClass classInfo;

    TextEditControl();

    const PropertyTable& Properties() override;

    // Properties of the inner box. Numbers that an enumeration does not have are run-time error 380.
    QVX_PROPERTY(OLE_COLOR, BackColor, TextBoxWindow)
    QVX_PROPERTY(OLE_COLOR, ForeColor, TextBoxWindow)
    STDMETHODIMP get_Font(IFontDisp** result) override;
    STDMETHODIMP put_Font(IFontDisp* value) override;
    STDMETHODIMP putref_Font(IFontDisp* value) override;
    QVX_PROPERTY(TextBorderStyle, BorderStyle, TextBoxWindow)
    QVX_PROPERTY(TextAlignment, Alignment, TextBoxWindow)
    QVX_PROPERTY(long, MaxLength, TextBoxWindow)
    STDMETHODIMP get_Text(BSTR* result) override;
    // The text is normalised for the data type first; error 5 for a negative DecimalPlaces in a numerics box.
    STDMETHODIMP put_Text(BSTR value) override;
    QVX_PROPERTY(BSTR, ToolTipText, TextBoxWindow)
    QVX_PROPERTY(VARIANT_BOOL, Enabled, TextBoxWindow)
    QVX_PROPERTY(VARIANT_BOOL, Locked, TextBoxWindow)
    QVX_PROPERTY(TextAppearance, Appearance, TextBoxWindow)

    // The settings of the checks. Nothing is refused here: any type, places and bounds are stored as given. The text is
    // then normalised for a new type and new places, which is error 5 for negative places.
    STDMETHODIMP get_DataType(dtaType* result) override;
    STDMETHODIMP put_DataType(dtaType value) override;
    QVX_FIELD(VARIANT_BOOL, AllowEmpty, Settings::allowEmpty)
    QVX_FIELD(VARIANT_BOOL, UseEnterKey, Settings::useEnterKey)
    QVX_FIELD(double, MinValue, KeyRules::minValue)
    QVX_FIELD(double, MaxValue, KeyRules::maxValue)
    QVX_FIELD(VARIANT_BOOL, AutoSelection, Settings::autoSelection)
    STDMETHODIMP get_DecimalPlaces(short* result) override;
    STDMETHODIMP put_DecimalPlaces(short value) override;
    QVX_FIELD(VARIANT_BOOL, Boundaries, KeyRules::boundaries)

    STDMETHODIMP get_TextBox(IDispatch** result) override;
    STDMETHODIMP get_hDC(long* result) override;
    STDMETHODIMP get_hWnd(long* result) override;
    STDMETHODIMP ShowAbout() override;

    // A Tab that would leave a text that must not be left is not passed on.
    STDMETHODIMP TranslateAccelerator(LPMSG message) override;

  protected:
    Size DefaultPixelSize() const override { return {81, 25}; }
    bool ReportsRefusedValues() const override { return true; }
    void OnAfterRead() override;
    void OnWindowCreated(HWND window) override;
    void OnWindowGoing() override { box_.Destroy(); }
    std::optional<LRESULT> OnWindowMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    bool IsCovered() override { return box_.Window() != nullptr; }
    void OnResize(Size size) override;
    void OnAmbientChange(DISPID property) override;
    HWND FocusWindow() override;
    void DrawControl(Surface& surface, const Rect& area) override;
    bool WantsKey(const MSG& message) override;

  private:
    // What it knows besides the rules for its keys.
    struct Settings {
        bool allowEmpty = true;
        bool useEnterKey = false;
        bool autoSelection = true;
        std::int16_t decimalPlaces = defaultPlaces;
    };
    friend MemberAccess;
    friend PropertyRows<TextEditControl>;

    ~TextEditControl() override = default;

    TextBoxWindow& PartOf(std::type_identity<TextBoxWindow>) { return box_; }
    KeyRules& PartOf(std::type_identity<KeyRules>) { return rules_; }
    Settings& PartOf(std::type_identity<Settings>) { return settings_; }

    // TextBoxListener
    void TextBoxChange() override;
    void TextBoxGotFocus() override;
    void TextBoxLostFocus(HWND to) override;
    void TextBoxKeyDown(int& key, int shift) override;
    void TextBoxKeyPress(int& character) override;
    void TextBoxKeyUp(int key, int shift) override;
    void TextBoxPrepared() override;

    TextEntry Entry() const;
    int Take(const KeyAnswer& answer);
    void NormaliseInPlace();
    void DataTypeChanged();
    // The check before the focus leaves: returns false when the text must not be left; otherwise the text is normalised
    // afterwards if it can be. Never fails.
    bool MayLeave();
    bool LeavesBy(HWND to) const;
    void SayEmpty();
    void TakeFocusBack();
    Text AccessibleName();

    TextBoxWindow box_{*this};
    TextBoxAutomation automation_;
    AmbientFont ambientFont_;
    KeyRules rules_;
    Settings settings_;
};

}  // namespace qvx::textedit
