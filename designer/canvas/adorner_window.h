// The window in which adorners are drawn above the controls of a form under design.
#pragma once

#include <windows.h>

#include <vector>

#include "designer/canvas/adorners.h"
#include "win/window.h"

namespace qvx::host::designer {

// As large as the form's inside, with a region that only leaves the adorners.
class AdornerWindow final : public Window {
  public:
    ~AdornerWindow() override { Destroy(); }

    bool Open(HWND form);
    void Show(std::vector<Adorner> adorners);

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    std::vector<Adorner> adorners_;
};

}  // namespace qvx::host::designer
