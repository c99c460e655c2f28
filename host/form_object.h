// What scripts see of the host: the form, its controls, the program, and the host itself.
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
    // For what a form under design does not do. Throws RunTimeError 387 there.
    HostForm& RunningForm() const;
    void AddWindowMembers();
    void AddLookMembers();
    void AddFrameMembers();
    // Throws RunTimeError 382 where nobody designs the form.
    DesignHost& RequireDesigner() const;

    HostForm* form_;
    ComPtr<IDispatch> controls_;
    std::vector<Text> names_;  // of controls and menus that were asked for, by their identifiers
};

// A control array, as the name of its elements alone gives it: txtField(2), txtField.Count, For Each.
ComPtr<IDispatch> MakeControlArray(HostForm& form, const Text& name);
// All control arrays of the form by name. Script engines call a member with the index as its argument, where they would
// refuse an argument to an object that is known by its own name.
ComPtr<IDispatch> MakeControlArrays(HostForm& form);
// "Host": Log, SaveForm, Quit, Arguments, DesignMode.
ComPtr<IDispatch> MakeHostObject(HostForm& form, const Options& options);
// "App": Title, Path, EXEName.
ComPtr<IDispatch> MakeAppObject();

}  // namespace qvx::host
