// What a form that is under design tells its designer, and asks of it.
#pragma once

#include "common/text.h"

namespace qvx::host {

class FormControl;

class DesignHost {
  public:
    // Something of the control, or (null) of the form itself, is not as its block says any more.
    virtual void OnChanged(FormControl* control) = 0;
    // Gives another name to the control, or (null) to the form. Throws RunTimeError when that cannot be its name.
    virtual void Rename(FormControl* control, const Text& name) = 0;
    // Makes the control an element of a control array, or with -1 takes it out. Throws RunTimeError.
    virtual void SetIndex(FormControl& control, int index) = 0;
    // The form and what stands on it have followed another resolution.
    virtual void OnResolution() = 0;
    // A file that pictures were written to: nobody misses it when the form is not saved.
    virtual void OnFileMade(const Text& path) = 0;

  protected:
    ~DesignHost() = default;
};

}  // namespace qvx::host
