// The grid's automation object, which hosts reach through ComboGrid.Grid.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <functional>

#include "com/pointer.h"
#include "widgets/flexgrid/flexgrid_window.h"

namespace qvx::flexgrid {

class FlexGridObject;

// The object of one window, created at first use. Hosts may keep it longer than the window exists: from then on every
// member fails with run-time error 364 "Object was unloaded".
class GridAutomation {
  public:
    // The window must outlive this. Events are raised while `raisesEvents` returns true.
    GridAutomation(FlexGridWindow& window, std::function<bool()> raisesEvents);
    ~GridAutomation();
    GridAutomation(const GridAutomation&) = delete;
    GridAutomation& operator=(const GridAutomation&) = delete;

    // Returns the object with a reference for the caller. Throws ComError, std::bad_alloc.
    IDispatch* Get();

  private:
    FlexGridWindow& window_;
    std::function<bool()> raisesEvents_;
    ComPtr<FlexGridObject> object_;
};

}  // namespace qvx::flexgrid
