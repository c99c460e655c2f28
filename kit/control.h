// A control with its dual interface: the kit plus IDispatch from the type library. See kit/control_base.h.
#pragma once

#include "com/dispatch.h"
#include "kit/control_base.h"

namespace qvx {

template <typename I>
class Control : public Dispatch<I>, public ControlBase {
  public:
    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        if (!object) return E_POINTER;
        if (iid == __uuidof(IUnknown) || InterfaceTraits<Dispatch<I>>::Answers(iid)) {
            *object = static_cast<I*>(this);
            AddRef();
            return S_OK;
        }
        return QueryKitInterface(iid, object);
    }
    STDMETHODIMP_(ULONG) AddRef() override { return AddReference(); }
    STDMETHODIMP_(ULONG) Release() override { return ReleaseReference(); }

  protected:
    explicit Control(const ControlClass& controlClass) : ControlBase(controlClass, __uuidof(I)) {}
    ~Control() override = default;

    IUnknown* Unknown() override { return static_cast<I*>(this); }

    // Implements the whole of a property's setter: `apply` applies the value, then the host is notified under the
    // property's name. An error that `apply` throws becomes the result, and the host is not notified.
    template <typename Apply>
    HRESULT Put(TextView name, Apply apply) {
        return Guard([&] {
            const auto keep = KeepAlive();  // a handler of an event that the change raises may release the control
            apply();
            ControlBase::Changed(name);
        });
    }
};

// Makes a control, for ControlClass::create.
template <typename C>
HRESULT CreateControl(REFIID iid, void** object) {
    const auto control = MakeObject<C>();
    // Some hosts neither initialise a control nor load it, so it starts with its defaults.
    control->InitialiseNew();
    return control->QueryInterface(iid, object);
}

}  // namespace qvx
