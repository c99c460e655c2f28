// The automation object of a combo, which hosts reach through ComboGrid.Lists.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include "com/pointer.h"
#include "widgets/combo/combo_window.h"

namespace qvx {

class ComboObject;

// The object of one combo, created at first use. Hosts may keep it longer than the combo exists: from then on every
// member fails with run-time error 364 "Object was unloaded".
class ComboAutomation {
  public:
    // The combo must outlive this.
    explicit ComboAutomation(ComboWindow& combo);
    ~ComboAutomation();
    ComboAutomation(const ComboAutomation&) = delete;
    ComboAutomation& operator=(const ComboAutomation&) = delete;

    // Returns the object with a reference for the caller. Throws ComError, std::bad_alloc.
    IDispatch* Get();

  private:
    ComboWindow& combo_;
    ComPtr<ComboObject> object_;
};

}  // namespace qvx
