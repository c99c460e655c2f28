// The current cell shown in the colour of selected text, and in bold when that is wanted.
#pragma once

#include "controls/grid/control_state.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

// Exactly the current cell is shown so, however it became that: the cursor went there, or rows and columns came, went
// or changed places around it. Nothing is shown before the control was first shown, and no fixed cell is: its ground
// stays a header's, on which the colour could not be read, and a grid that is being filled has the cursor there.
class Projection {
  public:
    Projection(flexgrid::Grid& grid, const ControlState& state) : grid_(grid), state_(state) {}
    Projection(const Projection&) = delete;
    Projection& operator=(const Projection&) = delete;

    // The current cell is about to be left: its weight and colour are the grid's again. Bold goes whether
    // ProjectionBold is on or not, as it may have been turned off while the cell was the current one; so may
    // ProjectSelection.
    void Leave();
    // A cell has just become the current one.
    void Enter();
    // Between the two no cell is shown so, whatever moves. Pairs may lie within others.
    void Hold() noexcept;
    void Release() noexcept;
    // The two for the length of a scope.
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
    bool shown_ = false;  // the current cell has the look
    int held_ = 0;
};

}  // namespace qvx::grid
