// A whole control, as one is written with the control kit: a lamp that a property lights.
#pragma once

#include <olectl.h>

#include "com/members.h"
#include "kit/control.h"

namespace qvx::test {

// Its dual interface. A control of the library has it, and its events, from typelib/.
struct _Lamp : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE get_Lit(VARIANT_BOOL* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_Lit(VARIANT_BOOL value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Watts(double* result) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_Watts(double value) = 0;
};

// What it remembers. The defaults are here and nowhere else.
struct LampState {
    bool lit = false;
    double watts = 60;
};

class LampControl final : public Control<_Lamp>, private MemberAccess<LampControl> {
  public:
    // AllControls() in server/controls.cpp lists every control's.
    static const ControlClass classInfo;

    LampControl() : Control(classInfo) {}

    QVX_FIELD(VARIANT_BOOL, Lit, LampState::lit)
    QVX_FIELD(double, Watts, LampState::watts)

    // What is saved, in this order.
    const PropertyTable& Properties() override {
        static const PropertyTable table =
            PropertyRows<LampControl>().Field(u"Lit", &LampState::lit).Field(u"Watts", &LampState::watts).Done();
        return table;
    }

  protected:
    void DrawControl(Surface& surface, const Rect& area) override {
        surface.FillRect(area, state_.lit ? Rgb(255, 255, 0) : colors::buttonFace);
    }
    std::optional<LRESULT> OnWindowMessage(UINT message, WPARAM, LPARAM) override {
        // A handler may release the control, which lives on until the message is done.
        if (message == WM_LBUTTONUP) Fire(u"Click");
        return std::nullopt;
    }

  private:
    friend MemberAccess;
    friend PropertyRows<LampControl>;

    ~LampControl() override = default;

    LampState& PartOf(std::type_identity<LampState>) { return state_; }

    LampState state_;
};

}  // namespace qvx::test

__CRT_UUID_DECL(qvx::test::_Lamp, 0x4de5f5f1, 0x0402, 0x49f2, 0x93, 0xdb, 0xde, 0xac, 0x18, 0xcc, 0x28, 0x9f)
