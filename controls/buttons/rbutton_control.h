// The RButton control: the rounded two-state button for host forms.
#pragma once

#include "controls/buttons/push_control.h"
#include "controls/buttons/rbutton_element_win32.h"

namespace qvx::buttons {

class RButtonControl final : public PushControl<_RButton, RButtonElement> {
  public:
    static const ControlClass classInfo;

    RButtonControl();

    const PropertyTable& Properties() override;

    STDMETHODIMP get_UpTopColor(OLE_COLOR* result) override {
        return Give(result, [&] { return button_.Look().upTopColor; });
    }
    STDMETHODIMP put_UpTopColor(OLE_COLOR value) override;
    STDMETHODIMP get_UpBottomColor(OLE_COLOR* result) override {
        return Give(result, [&] { return button_.Look().upBottomColor; });
    }
    STDMETHODIMP put_UpBottomColor(OLE_COLOR value) override;
    STDMETHODIMP get_DownTopColor(OLE_COLOR* result) override {
        return Give(result, [&] { return button_.Look().downTopColor; });
    }
    STDMETHODIMP put_DownTopColor(OLE_COLOR value) override;
    STDMETHODIMP get_DownBottomColor(OLE_COLOR* result) override {
        return Give(result, [&] { return button_.Look().downBottomColor; });
    }
    STDMETHODIMP put_DownBottomColor(OLE_COLOR value) override;
    STDMETHODIMP get_MaskColor(OLE_COLOR* result) override {
        return Give(result, [&] { return button_.Look().maskColor; });
    }
    STDMETHODIMP put_MaskColor(OLE_COLOR value) override;
    // Throws run-time error 393 at run time.
    STDMETHODIMP get_Value(VARIANT_BOOL* result) override;
    STDMETHODIMP SetFocus() override;
    STDMETHODIMP RemoveFocus() override;

  protected:
    Text DefaultCaption() const override { return DefaultRButtonCaption(Host().DisplayName()); }
    void ValueSet(bool value) override { value_ = value; }
    void OnAmbientChange(DISPID property) override;
    UniqueRegion WindowShape(Size size) const override;

  private:
    ~RButtonControl() override = default;
    // The outlines and the dots of the focus rectangle change only when the button is next drawn.
    HRESULT SetOutline(const char16_t* name, OleColor RButtonLook::*outline, OLE_COLOR value);

    bool value_ = false;  // as last set or loaded
};

}  // namespace qvx::buttons
