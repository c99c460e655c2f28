// The marks of a grid for data entry: invalid cells, and rows that differ from their records.
#pragma once

#include "controls/grid/invalid_marks.h"
#include "controls/grid/row_states.h"
#include "widgets/flexgrid/cell_marks.h"

namespace qvx::grid {

class EntryMarks final : public flexgrid::CellMarks {
  public:
    // All must outlive this.
    EntryMarks(const InvalidMarks& invalid, const RowStates& states, const ControlState& state)
        : invalid_(invalid), states_(states), state_(state) {}

    bool Any() const { return state_.markInvalid || MarksRows(); }

    void Prepare() const override {
        if (state_.markInvalid) invalid_.Prepare();
    }
    bool IsMarked(int row, int col) const override { return state_.markInvalid && invalid_.IsMarked(row, col); }
    bool Waits() const override { return state_.markInvalid && invalid_.Waits(); }
    bool MarksRows() const override { return state_.markChanged && states_.On(); }
    bool IsRowMarked(int row) const override { return states_.IsMarked(row); }

  private:
    const InvalidMarks& invalid_;
    const RowStates& states_;
    const ControlState& state_;
};

}  // namespace qvx::grid
