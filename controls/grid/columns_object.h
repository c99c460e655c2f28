// The objects that hosts get as ComboGrid.Columns: a collection, and an object for a column.
#pragma once

#include <windows.h>

#include "Qvx.h"
#include "com/pointer.h"

namespace qvx::grid {

class ColumnsObject;
class ComboGridControl;

// The collection of one control, created at first use. Hosts may keep it and its columns longer than the control
// exists: from then on every member fails with run-time error 364 "Object was unloaded".
class ColumnsAutomation {
  public:
    // The control must outlive this.
    explicit ColumnsAutomation(ComboGridControl& control);
    ~ColumnsAutomation();
    ColumnsAutomation(const ColumnsAutomation&) = delete;
    ColumnsAutomation& operator=(const ColumnsAutomation&) = delete;

    // Returns the collection with a reference for the caller. Throws ComError, std::bad_alloc.
    IGridColumns* Get();

  private:
    ComboGridControl& control_;
    ComPtr<ColumnsObject> object_;
};

}  // namespace qvx::grid
