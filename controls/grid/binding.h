// A grid filled from a set of records, one row each.
#pragma once

#include <cstdint>
#include <functional>

#include "common/text.h"
#include "controls/grid/control_state.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

// Records that are read once, from where they stand to their end. Any call may raise a run-time error.
class RecordSource {
  public:
    virtual ~RecordSource() = default;
    // How many there are; -1 when it is not known.
    virtual std::int64_t Count() = 0;
    virtual bool AtEnd() = 0;
    // The current record's number, as the records count; below 0 when it is not known.
    virtual std::int64_t Position() = 0;
    // The texts of the current record's fields, a tab behind each.
    virtual void AppendFields(Text& row) = 0;
    virtual void MoveNext() = 0;
};

// Adds a row for every record left: its number in column 0 when rows are numbered, the first field in column BindFrom,
// fields beyond the last column dropped. After each, `goOn` is told how many there are so far and may end the loading.
// `wanted` is asked whenever the records or the listeners of the grid have had their turn: once it says no, neither is
// touched any more. An error of the records comes out and leaves the rows added so far. Error 5 for a BindFrom below 0.
void LoadRecords(flexgrid::Grid& grid, const ControlState& state, RecordSource& records,
                 const std::function<bool()>& wanted, const std::function<bool(std::int64_t loaded)>& goOn);

// Keeps the events that tell of progress to ten a second, the first after a tenth of a second. Times in milliseconds.
class ProgressClock {
  public:
    explicit ProgressClock(std::uint64_t now) : last_(now) {}
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
