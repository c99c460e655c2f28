// What scripts see of a form, and what its controls see of it as their container.
#pragma once

#include <windows.h>

#include <oleidl.h>

#include "host/form_window.h"
#include "host/named_object.h"

namespace qvx::host {

// The form: its own members, and its controls and menus by name. To its controls it is their container too.
class FormObject final : public NamedObject, public IOleContainer {
  public:
    explicit FormObject(HostForm& form);
    // The form is gone; scripts and controls that still hold this object get errors.
    void Forget() { form_ = nullptr; }

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override { return NamedObject::AddRef(); }
    STDMETHODIMP_(ULONG) Release() override { return NamedObject::Release(); }
    STDMETHODIMP ParseDisplayName(IBindCtx* context, LPOLESTR name, ULONG* eaten, IMoniker** moniker) override;
    STDMETHODIMP EnumObjects(DWORD flags, IEnumUnknown** objects) override;
    STDMETHODIMP LockContainer(WINBOOL lock) override;

  protected:
    HRESULT FindOther(LPOLESTR name, DISPID* id) override;
    HRESULT InvokeOther(DISPID member, LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                        EXCEPINFO* exception, UINT* argumentInError) override;

  private:
    ~FormObject() override = default;
    HostForm& Form() const;
    // The form, for what one under design does not do. Throws RunTimeError 387 there.
    HostForm& AtWork() const;
    void AddWindowMembers();
    void AddLookMembers();
    void AddFrameMembers();
    // Throws RunTimeError 382 when the form is not under design.
    DesignHost& RequireDesigner() const;

    HostForm* form_;
    ComPtr<IDispatch> controls_;
    std::vector<Text> names_;  // of controls and menus that were asked for, by their identifiers
};

}  // namespace qvx::host
