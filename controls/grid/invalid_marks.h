// The cells that a grid for data entry shows as invalid while it is being filled in: those that break a rule of their
// column or of the host, except in rows that are still empty.
#pragma once

#include <optional>
#include <vector>

#include "controls/grid/cell_place.h"
#include "controls/grid/column_checks.h"
#include "controls/grid/host_verdicts.h"

namespace qvx::grid {

// Hosts cannot be asked while cells are drawn: the rows about which they have to be are remembered until Ask.
class InvalidMarks final {
  public:
    // Both must outlive this.
    InvalidMarks(const flexgrid::Grid& grid, const ControlState& state) : grid_(grid), state_(state), host_(grid) {}

    // To be called before cells are examined, after a change of the rules.
    void Prepare() const { columns_ = CheckedColumns(grid_, state_, true); }
    bool IsMarked(int row, int col) const { return !MessageAt(row, col).empty(); }

    // Whether there are rows to ask about since the last Ask.
    bool Waits() const { return !waiting_.empty(); }
    // Asks the host about them. Returns whether any cell of theirs has to be drawn again.
    bool Ask(const AskHost& askHost);
    // Forgets what the host has said.
    void Forget() { host_.Clear(); }

    // These need no preparation. What is wrong with a cell; "" for one that is not marked. Valid until the next call.
    TextView MessageOf(int row, int col) const;
    // Returns the marked cell after the given one, row by row and from the first row again after the last; nullopt
    // without any, also when the given one is the only one, and when the host moves rows while it is asked. Without
    // `askHost`, the host's rules count where it has been asked already.
    std::optional<CellPlace> Next(CellPlace place, const AskHost& askHost = {});

  private:
    TextView MessageAt(int row, int col) const;
    // Whether the host has been asked about all cells of a row, if it has to be.
    bool IsKnown(int row) const;
    std::optional<CellPlace> FirstIn(CellPlace first, int lastRow, const AskHost& askHost);

    const flexgrid::Grid& grid_;
    const ControlState& state_;
    mutable std::vector<CheckedColumn> columns_;
    HostVerdicts host_;
    mutable std::vector<int> waiting_;  // rows, in the structure of that version
    mutable std::uint64_t structure_ = 0;
};

}  // namespace qvx::grid
