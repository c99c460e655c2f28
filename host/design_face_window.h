// What a form shows of itself under design, beside its controls: a strip in place of its menu bar, and the grid.
#pragma once

#include <windows.h>

#include <optional>
#include <vector>

#include "common/geometry.h"
#include "host/menu_model.h"
#include "win/handles.h"

namespace qvx::host {

class DesignFace {
  public:
    // The strip is above the window's inside and has no height without menus.
    void FollowMenus(const std::vector<MenuItem>& menus, Dpi dpi);
    int StripHeight() const { return stripHeight_; }
    // Paints the strip into the frame of the form's window.
    void PaintStrip(HWND form, const std::vector<MenuItem>& menus);
    // The menu at a point of the strip, counted from 0; in pixels from the window's inside.
    std::optional<std::size_t> MenuAt(Point point) const;

    // Fills the form's inside with its colour and the grid.
    void FillBackground(HWND form, HDC dc, COLORREF back);
    // Colour or resolution are others than before.
    void ForgetBackground() { grid_.Reset(); }

  private:
    int stripHeight_ = 0;
    std::vector<Rect> menuAreas_;  // from the top left of the strip
    UniqueBrush grid_;
};

}  // namespace qvx::host
