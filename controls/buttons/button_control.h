// The Button control: the flat push button for host forms.
#pragma once

#include "controls/buttons/push_control.h"
#include "widgets/button/button_element_win32.h"

namespace qvx::buttons {

class ButtonControl final : public PushControl<_Button, ButtonElement> {
  public:
    static const ControlClass classInfo;

    ButtonControl() : PushControl(classInfo) {}

    const PropertyTable& Properties() override;

    STDMETHODIMP get_Behavior(::Style* result) override;
    // Throws run-time error 380 for anything but the three styles.
    STDMETHODIMP put_Behavior(::Style value) override;
    STDMETHODIMP get_DropDown(VARIANT_BOOL* result) override;
    STDMETHODIMP put_DropDown(VARIANT_BOOL value) override;
    STDMETHODIMP get_Focus(VARIANT_BOOL* result) override;
    STDMETHODIMP put_Focus(VARIANT_BOOL value) override;
    STDMETHODIMP DRAWBUTTON(short state) override;

  protected:
    Text DefaultCaption() const override { return Host().DisplayName(); }

  private:
    ~ButtonControl() override = default;
};

}  // namespace qvx::buttons
