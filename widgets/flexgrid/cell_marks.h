// Cells that are drawn in another way for a reason that the grid does not know.
#pragma once

namespace qvx::flexgrid {

// The cells that stand out because a search has found them.
class CellHits {
  public:
    // Called for scrolling cells that are drawn.
    virtual bool IsHit(int row, int col) const = 0;

  protected:
    ~CellHits() = default;
};

// The cells that have a mark in their corner, and the rows that have one where they begin.
class CellMarks {
  public:
    // Called before cells are drawn.
    virtual void Prepare() const = 0;
    // Called for scrolling cells that are drawn.
    virtual bool IsMarked(int row, int col) const = 0;
    // Whether marks can be known only after the cells have been drawn (GridWindowEvents::MarksWait).
    virtual bool Waits() const { return false; }
    // Whether any row may have a mark.
    virtual bool MarksRows() const { return false; }
    // Called for scrolling rows that are drawn if MarksRows.
    virtual bool IsRowMarked(int /*row*/) const { return false; }

  protected:
    ~CellMarks() = default;
};

}  // namespace qvx::flexgrid
