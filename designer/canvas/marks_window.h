// The window in which marks are drawn above the controls of a form under design.
#pragma once

#include <windows.h>

#include <vector>

#include "designer/canvas/marks.h"
#include "win/window.h"

namespace qvx::host::design {

// As large as the form's inside, but cut down to what there is to draw.
class MarksWindow final : public Window {
  public:
    ~MarksWindow() override { Destroy(); }

    bool Open(HWND form);
    void Show(std::vector<Mark> marks);

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    std::vector<Mark> marks_;
};

}  // namespace qvx::host::design
