// What a form under design notifies its designer of, and asks of it.
#pragma once

#include "common/text.h"

namespace qvx::host {

class FormControl;

class DesignHost {
  public:
    // The control, or (null) the form itself, is no longer as its block says.
    virtual void OnChanged(FormControl* control) = 0;
    // Gives another name to the control, or (null) to the form. Throws RunTimeError when that cannot be its name.
    virtual void Rename(FormControl* control, const Text& name) = 0;
    // Makes the control an element of a control array, or with -1 takes it out. Throws RunTimeError.
    virtual void SetIndex(FormControl& control, int index) = 0;
    // The form and its controls have followed another resolution.
    virtual void OnResolution() = 0;
    // A picture has been written to a file. It is of no use when the form is not saved.
    virtual void OnFileMade(const Text& path) = 0;

  protected:
    ~DesignHost() = default;
};

}  // namespace qvx::host
