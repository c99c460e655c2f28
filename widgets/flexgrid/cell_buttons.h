// Buttons at the ends of cells, which open something for the cell.
#pragma once

namespace qvx::flexgrid {

class CellButtons {
  public:
    virtual ~CellButtons() = default;
    // Whether a cell, which is the current one or not, has a button. Not called for fixed cells.
    virtual bool HasButton(int row, int col, bool current) const = 0;
    // Whether buttons are drawn in the system's visual style.
    virtual bool Themed() const { return false; }
};

}  // namespace qvx::flexgrid
