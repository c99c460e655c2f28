// The TextEdit control: a text box for data entry that checks typed and remaining text.
#pragma once

#include <windows.h>

#include "Qvx.h"
#include "com/members.h"
#include "controls/textedit/key_filter.h"
#include "kit/control.h"
#include "widgets/textbox/text_box_object.h"

namespace qvx::textedit {

class TextEditControl final : public Control<_TextEdit>, private TextBoxListener {
  public:
    static const ControlClass classInfo;

    TextEditControl();

    const PropertyTable& Properties() override;

    // Properties of the inner box. Numbers that an enumeration does not have are run-time error 380.
    STDMETHODIMP get_BackColor(OLE_COLOR* result) override;
    STDMETHODIMP put_BackColor(OLE_COLOR value) override;
    STDMETHODIMP get_ForeColor(OLE_COLOR* result) override;
    STDMETHODIMP put_ForeColor(OLE_COLOR value) override;
    STDMETHODIMP get_Font(IFontDisp** result) override;
    STDMETHODIMP put_Font(IFontDisp* value) override;
    STDMETHODIMP putref_Font(IFontDisp* value) override;
    STDMETHODIMP get_BorderStyle(TextBorderStyle* result) override;
    STDMETHODIMP put_BorderStyle(TextBorderStyle value) override;
    STDMETHODIMP get_Alignment(TextAlignment* result) override;
    STDMETHODIMP put_Alignment(TextAlignment value) override;
    STDMETHODIMP get_MaxLength(long* result) override;
    STDMETHODIMP put_MaxLength(long value) override;
    STDMETHODIMP get_Text(BSTR* result) override;
    // The text is normalised for the data type first; error 5 for a negative DecimalPlaces in a numerics box.
    STDMETHODIMP put_Text(BSTR value) override;
    STDMETHODIMP get_ToolTipText(BSTR* result) override;
    STDMETHODIMP put_ToolTipText(BSTR value) override;
    STDMETHODIMP get_Enabled(VARIANT_BOOL* result) override;
    STDMETHODIMP put_Enabled(VARIANT_BOOL value) override;
    STDMETHODIMP get_Locked(VARIANT_BOOL* result) override;
    STDMETHODIMP put_Locked(VARIANT_BOOL value) override;
    STDMETHODIMP get_Appearance(TextAppearance* result) override;
    STDMETHODIMP put_Appearance(TextAppearance value) override;

    // The settings of the checks. Nothing is refused here: any type, places and bounds are stored as given. The text is
    // then normalised for a new type and new places, which is error 5 for negative places.
    STDMETHODIMP get_DataType(dtaType* result) override;
    STDMETHODIMP put_DataType(dtaType value) override;
    STDMETHODIMP get_AllowEmpty(VARIANT_BOOL* result) override;
    STDMETHODIMP put_AllowEmpty(VARIANT_BOOL value) override;
    STDMETHODIMP get_UseEnterKey(VARIANT_BOOL* result) override;
    STDMETHODIMP put_UseEnterKey(VARIANT_BOOL value) override;
    STDMETHODIMP get_MinValue(double* result) override;
    STDMETHODIMP put_MinValue(double value) override;
    STDMETHODIMP get_MaxValue(double* result) override;
    STDMETHODIMP put_MaxValue(double value) override;
    STDMETHODIMP get_AutoSelection(VARIANT_BOOL* result) override;
    STDMETHODIMP put_AutoSelection(VARIANT_BOOL value) override;
    STDMETHODIMP get_DecimalPlaces(short* result) override;
    STDMETHODIMP put_DecimalPlaces(short value) override;
    STDMETHODIMP get_Boundaries(VARIANT_BOOL* result) override;
    STDMETHODIMP put_Boundaries(VARIANT_BOOL value) override;

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
    ~TextEditControl() override = default;

    // TextBoxListener
    void TextBoxChange() override;
    void TextBoxGotFocus() override;
    void TextBoxLostFocus(HWND to) override;
    void TextBoxKeyDown(int& key, int shift) override;
    void TextBoxKeyPress(int& character) override;
    void TextBoxKeyUp(int key, int shift) override;
    void TextBoxPrepared() override;

    template <class Result, class Value>
    HRESULT Get(Result* result, Value (TextBoxWindow::*member)() const);
    template <class Parameter, class Given>
    HRESULT Put(TextView name, void (TextBoxWindow::*member)(Parameter), Given value);
    using Control::Put;

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
    bool allowEmpty_ = true;
    bool useEnterKey_ = false;
    bool autoSelection_ = true;
    std::int16_t decimalPlaces_ = 2;
};

}  // namespace qvx::textedit
