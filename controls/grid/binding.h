// Filling a grid from a set of records, one row for each.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "common/text.h"
#include "controls/grid/control_state.h"
#include "controls/grid/field_map.h"
#include "controls/grid/row_states.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

// Records that are read once, from their current position to their end. Any call may raise a run-time error.
class RecordSource {
  public:
    virtual ~RecordSource() = default;
    // Returns the number of records; -1 when it is not known.
    virtual std::int64_t Count() = 0;
    virtual bool AtEnd() = 0;
    // Returns the current record's number, as the records count; below 0 when it is not known.
    virtual std::int64_t Position() = 0;
    // Appends the texts of the current record's fields, each followed by a tab.
    virtual void AppendFields(Text& row) = 0;
    virtual void MoveNext() = 0;
    // The names of the fields, for sources that can be loaded by name; AppendField appends the text of one of them.
    virtual std::vector<Text> FieldNames() { return {}; }
    virtual void AppendField(int /*field*/, Text& /*text*/) {}
};

// Adds a row for every remaining record, which is unchanged for `states`: its number in column 0 when rows are
// numbered, the first field in column BindFrom; fields beyond the last column are dropped. With a map by name, columns
// get the fields that it gives them. After each, `goOn` receives the number of records so far and may end the loading.
// `wanted` is asked after calls to the records and to the listeners of the grid: once it returns false, neither is used
// any more. An error of the records is passed on and leaves the rows added so far. Raises error 5 for a BindFrom below
// 0.
void LoadRecords(flexgrid::Grid& grid, const ControlState& state, RowStates& states, const FieldMap& map,
                 RecordSource& records, const std::function<bool()>& wanted,
                 const std::function<bool(std::int64_t loaded)>& goOn);

// Limits the events that report progress to ten a second, the first after a tenth of a second. Times are in
// milliseconds.
class ProgressClock {
  public:
    explicit ProgressClock(std::uint64_t now) : last_(now) {}
    // Whether the next event is due.
    bool Due(std::uint64_t now) {
        if (now - last_ < interval) return false;
        last_ = now;
        return true;
    }

  private:
    static constexpr std::uint64_t interval = 100;
    std::uint64_t last_;
};

}  // namespace qvx::grid
