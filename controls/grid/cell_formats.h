// The formats in which columns show numbers and dates: the property ColumnFormats. The texts of the cells stay as they
// are.
#pragma once

#include <vector>

#include "common/dates.h"
#include "common/text.h"
#include "controls/grid/control_state.h"
#include "controls/grid/number_format.h"
#include "widgets/flexgrid/cell_texts.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

class CellFormats final : public flexgrid::CellTexts {
  public:
    // Both must outlive this.
    CellFormats(const flexgrid::Grid& grid, const ControlState& state) : grid_(grid), state_(state) {}

    // To be called after ColumnFormats has changed.
    void Forget() { known_.clear(); }
    // Does the same, and sets the user's settings.
    void Refresh(NumberSigns signs, DateSettings dates) noexcept;

    // Returns the format of a column; "" for none. Of several formats for a caption, the first one counts.
    TextView FormatOf(int col) const;
    TextView ShownText(int col, TextView text, Text& scratch) const override;

  private:
    struct Known {
        Text caption;
        Text format;
        FormatKind kind = FormatKind::number;
        bool sought = false;
    };
    const Known& Find(int col) const;

    const flexgrid::Grid& grid_;
    const ControlState& state_;
    NumberSigns signs_;
    DateSettings dates_;
    mutable std::vector<Known> known_;  // by column
};

}  // namespace qvx::grid
