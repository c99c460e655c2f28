// The highlight of the current cell: the colour of selected text, and bold if wanted.
#pragma once

#include "controls/grid/control_state.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

// Exactly the current cell is highlighted, however it became the current one: the cursor moved there, or rows and
// columns around it were added, removed or moved. Nothing is highlighted before the control is first shown, and no
// fixed cell is: its background stays that of a header, on which the colour could not be read, and the cursor is there
// while a grid is being filled.
class Projection {
  public:
    Projection(flexgrid::Grid& grid, const ControlState& state) : grid_(grid), state_(state) {}
    Projection(const Projection&) = delete;
    Projection& operator=(const Projection&) = delete;

    // Called before the current cell is left: removes the highlight, so that its weight and colour are the grid's
    // again. Bold is removed regardless of ProjectionBold, which may have been turned off while the cell was the
    // current one; the same holds for ProjectSelection.
    void Leave();
    // Called after a cell has become the current one.
    void Enter();
    // Between the two calls no cell is highlighted, whatever moves. Pairs may be nested.
    void Hold() noexcept;
    void Release() noexcept;
    // Calls the two for the duration of a scope.
    class Held {
      public:
        explicit Held(Projection& projection) : projection_(projection) { projection_.Hold(); }
        ~Held() { projection_.Release(); }
        Held(const Held&) = delete;
        Held& operator=(const Held&) = delete;

      private:
        Projection& projection_;
    };

  private:
    bool OnDataCell() const;
    void TakeBack();
    void Show();

    flexgrid::Grid& grid_;
    const ControlState& state_;
    bool shown_ = false;  // the current cell is highlighted
    int held_ = 0;
};

}  // namespace qvx::grid
