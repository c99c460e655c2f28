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

    // To be called after ColumnFormats or the user's settings have changed.
    void Refresh(const NumberSigns& signs, const DateSettings& dates);

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

// Returns the format of a column with this caption; "" for none.
TextView ListedFormat(TextView formats, TextView caption);

// Returns the list with another format for a column; "" removes it. Raises error 380 for a caption with "]" and for a
// format with ",[", which no list can have.
Text WithFormat(TextView formats, TextView caption, TextView format);

// Raises error 380 for a list that cannot be read.
void CheckFormats(TextView formats);

}  // namespace qvx::grid
