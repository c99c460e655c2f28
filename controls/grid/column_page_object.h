// prpctlColumns: the property page of ComboGrid, on which its columns are designed.
#pragma once

#include <windows.h>

#include "Qvx.h"
#include "controls/grid/column_page_window.h"
#include "kit/control_class.h"
#include "kit/property_page.h"

namespace qvx::grid {

// The page's class identifier; the type library does not contain the class.
extern const CLSID CLSID_prpctlColumns;
extern const PageClass columnPageClass;

class ColumnPage final : public PropertyPage {
  public:
    ColumnPage();

  private:
    ~ColumnPage() override = default;

    PageWindow& Contents() override { return window_; }
    bool Take(IUnknown* control) override;
    bool HasControl() const override { return control_ != nullptr; }
    void Fill() override;
    // Sets the properties that the user's changes affect, and no others.
    void Store() override;

    void Check(HRESULT result) const;
    // Sets what a form keeps besides the format string, and what that sets for a column that has no caption or is
    // hidden.
    void StoreLook();

    ComPtr<_ComboGrid> control_;
    ColumnPageWindow window_;
};

}  // namespace qvx::grid
