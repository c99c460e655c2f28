// What scripts see of a form's controls and menus together: all of them, and control arrays.
#pragma once

#include "host/form_window.h"
#include "host/named_object.h"

namespace qvx::host {

// An object that belongs to a form. It may outlive the form in a script's variable; reaching the form then throws
// RunTimeError 91.
class FormPart : public NamedObject {
  protected:
    explicit FormPart(HostForm& form) : form_(&form), watch_(form.Watch()) {}
    ~FormPart() override = default;
    HostForm& Form() const {
        if (!watch_.Alive()) ThrowObjectNotSet();
        return *form_;
    }

  private:
    HostForm* form_;
    LifeWatch watch_;
};

// Everything on the form that scripts can reach: its controls, then its menus.
struct NamedPart {
    Text name;
    int index;  // -1 for a part that is no element of an array
    ComPtr<IDispatch> object;
};

std::vector<NamedPart> PartsOf(HostForm& form);

// "Controls": the controls and menus by number (from 0) and by name.
ComPtr<IDispatch> MakeControls(HostForm& form);
// The one of them that the first argument names or counts. Throws RunTimeError 730 and 9.
Variant ControlOf(HostForm& form, const Call& call);
// A control array, as the name of its elements alone gives it: txtField(2), txtField.Count, For Each.
ComPtr<IDispatch> MakeControlArray(HostForm& form, const Text& name);
// All control arrays of the form by name. Script engines call a member with the index as its argument, where they would
// refuse an argument to an object that is known by its own name.
ComPtr<IDispatch> MakeControlArrays(HostForm& form);

}  // namespace qvx::host
