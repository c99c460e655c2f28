// The footer of a grid as a window inside the grid's, at the bottom of its client area.
#pragma once

#include "widgets/flexgrid/footer.h"
#include "win/gdi_surface.h"
#include "win/window.h"

namespace qvx::flexgrid {

class FlexGridWindow;

class FooterWindow final : public Window {
  public:
    explicit FooterWindow(FlexGridWindow& grid) : grid_(grid) {}

    // Not owned; null for no footer, whose window is then destroyed.
    void Show(const CellFooter* footer);
    const CellFooter* Footer() const { return footer_; }
    // Creates the window if it is to be shown, and places it. To be called when the grid has got another size.
    void Place();
    // Draws the footer again soon, after a change of what it shows.
    void Refresh();
    // Its height in pixels; 0 without one.
    int Height() const;

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    Text Summary() const;

    FlexGridWindow& grid_;
    const CellFooter* footer_ = nullptr;
    bool invalid_ = false;  // since it was last drawn
};

}  // namespace qvx::flexgrid
