// The Button control: the push button for host forms.
#pragma once

#include "Qvx.h"
#include "com/font_object.h"
#include "controls/buttons/button_element.h"
#include "server/control.h"

namespace qvx::buttons {

class ButtonControl final : public Control<_Button> {
  public:
    static const ControlClass classInfo;

    ButtonControl();

    const PropertyTable& Properties() override;

    STDMETHODIMP get_Caption(BSTR* result) override;
    STDMETHODIMP put_Caption(BSTR value) override;
    STDMETHODIMP get_Font(IFontDisp** result) override;
    STDMETHODIMP put_Font(IFontDisp* value) override;
    STDMETHODIMP putref_Font(IFontDisp* value) override;
    STDMETHODIMP get_ForeColor(OLE_COLOR* result) override;
    STDMETHODIMP put_ForeColor(OLE_COLOR value) override;
    STDMETHODIMP get_BackColor(OLE_COLOR* result) override;
    STDMETHODIMP put_BackColor(OLE_COLOR value) override;
    STDMETHODIMP get_BorderColor(OLE_COLOR* result) override;
    STDMETHODIMP put_BorderColor(OLE_COLOR value) override;
    STDMETHODIMP get_FocusRect(VARIANT_BOOL* result) override;
    STDMETHODIMP put_FocusRect(VARIANT_BOOL value) override;
    STDMETHODIMP get_Behavior(::Style* result) override;
    // Run-time error 380 for anything but the three styles.
    STDMETHODIMP put_Behavior(::Style value) override;
    STDMETHODIMP get_DropDown(VARIANT_BOOL* result) override;
    STDMETHODIMP put_DropDown(VARIANT_BOOL value) override;
    STDMETHODIMP get_Enabled(VARIANT_BOOL* result) override;
    STDMETHODIMP put_Enabled(VARIANT_BOOL value) override;
    // Run-time error 387 at design time.
    STDMETHODIMP put_Value(VARIANT_BOOL value) override;
    STDMETHODIMP get_Focus(VARIANT_BOOL* result) override;
    STDMETHODIMP put_Focus(VARIANT_BOOL value) override;
    STDMETHODIMP get_hWnd(long* result) override;
    STDMETHODIMP get_hDC(long* result) override;
    STDMETHODIMP DRAWBUTTON(short state) override;
    STDMETHODIMP DRAWFocus() override;
    STDMETHODIMP ShowAbout() override;

  protected:
    void OnWindowCreated(HWND window) override { button_.Attach(window); }
    void OnWindowGoing() override { button_.Attach(nullptr); }
    std::optional<LRESULT> OnWindowMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void OnResize(Size size) override { button_.Resize(size); }
    void OnAfterRead() override;
    void OnAmbientChange(DISPID property) override;
    void OnFocus(bool focused) override { button_.FocusChanged(focused); }
    void DrawControl(Surface& surface, const Rect& area) override;
    Text AccessKeys() override;
    void OnAccessKey(int key) override;
    bool WantsKey(const MSG& message) override;

  private:
    ~ButtonControl() override = default;
    // The whole of a setter: the element takes the value, the host hears of it.
    template <typename Apply>
    HRESULT Set(const char16_t* name, Apply apply);
    Text DefaultCaption() const;
    bool TakesInput() const;

    ButtonElement button_;
    FontProperty font_;
    FontSpec ambientFont_;  // as the host last gave it
};

}  // namespace qvx::buttons
