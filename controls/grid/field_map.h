// Which field of a record belongs to which column.
#pragma once

#include <optional>
#include <vector>

#include "common/text.h"
#include "controls/grid/control_state.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

class FieldMap {
  public:
    // No column has a field by name.
    FieldMap() = default;
    // As BindFields says; without it, the first field is in column BindFrom, and so on. Captions and names are compared
    // regardless of case. Raises error 380 for a list that cannot be read and for columns and fields that do not exist.
    [[gnu::cold]] FieldMap(const flexgrid::Grid& grid, const ControlState& state, const std::vector<Text>& names);

    // Whether BindFields names the fields.
    bool ByName() const { return byName_; }
    // Returns the field of a column; nullopt for none.
    std::optional<int> FieldOf(int col) const;
    // Returns the number of columns up to the last that has a field.
    int Columns() const { return static_cast<int>(fields_.size()); }

  private:
    static constexpr int none = -1;
    std::vector<int> fields_;  // by column
    bool byName_ = false;
};

// Returns the place of a name among others, regardless of case; nullopt if it is not there.
std::optional<int> PlaceOf(TextView name, const std::vector<Text>& names);

}  // namespace qvx::grid
