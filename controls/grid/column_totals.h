// What the footer of a grid shows below columns: sums, counts and averages, kept up to date as cells change.
#pragma once

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "common/exact_sum.h"
#include "common/text.h"
#include "controls/grid/cell_formats.h"
#include "controls/grid/control_state.h"
#include "widgets/flexgrid/cell_footer.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

// The codes of the coded list Footer, for the rows that the filter shows; 3 more for all rows.
enum class TotalKind { sum = 0, count = 1, average = 2 };
constexpr int totalKinds = 3;

// A change costs the time of the columns with a total, however many rows there are: the old numbers of a row are
// subtracted before it changes, and its new ones are added when totals are next asked for. Where many rows change at
// once, all of them are read again then.
class ColumnTotals final : public flexgrid::CellFooter, private flexgrid::RowFollower {
  public:
    // All must outlive this.
    ColumnTotals(flexgrid::Grid& grid, const ControlState& state, const CellFormats& formats)
        : grid_(grid), state_(state), formats_(formats) {}
    ~ColumnTotals() { Watch(false); }
    ColumnTotals(const ColumnTotals&) = delete;
    ColumnTotals& operator=(const ColumnTotals&) = delete;

    // Begins or ends to follow the grid. To be called after Footer has changed.
    void Watch(bool on) noexcept;
    // Reads all rows when totals are next asked for.
    void Refresh() noexcept;

    // Returns the total of a column as a text; "" for a column that has none.
    Text TotalOf(int col) const { return NumberOf(col).first; }
    // Returns it as it is shown: sums and averages are in the format of the column.
    Text TextOf(int col) const override;

  private:
    struct Total {
        int col = 0;
        TotalKind kind = TotalKind::sum;
        bool allRows = false;
        ExactSum sum;
        std::int64_t count = 0;  // of cells with a text
    };

    // RowFollower
    void CellsChange(flexgrid::RowId row, const flexgrid::RowView& cells, int firstCol, int count) noexcept override;
    void RowsCome(std::span<const flexgrid::RowId> rows) noexcept override;
    void RowLeaves(flexgrid::RowId row, const flexgrid::RowView& cells) noexcept override;
    void RowGone(flexgrid::RowId row) noexcept override;
    void OrderChanges() override {}
    void ColumnMoves(int, int) override { Refresh(); }
    void ColumnsCut(int) noexcept override { Refresh(); }
    void FilterChanged() noexcept override { Refresh(); }
    void RolledBack() noexcept override { Refresh(); }

    // Returns the text of a total, and whether it is in the unit of the column.
    std::pair<Text, bool> NumberOf(int col) const;
    // Brings the totals up to date.
    void Settle() const;
    void ReadAll() const;
    std::vector<flexgrid::RowId> HeaderRows() const;
    bool IsHeader(flexgrid::RowId row) const;
    void TakeAway(flexgrid::RowId row, const flexgrid::RowView& cells) noexcept;
    bool Wait(flexgrid::RowId row) noexcept;
    void Count(flexgrid::RowId row, const flexgrid::RowView& cells, bool add) const;

    flexgrid::Grid& grid_;
    const ControlState& state_;
    const CellFormats& formats_;
    bool on_ = false;
    mutable bool stale_ = true;  // all rows are to be read
    mutable std::vector<Total> totals_;
    // The rows that are not part of the totals, by identity and in the order in which they came to wait.
    mutable std::vector<bool> waits_;
    mutable std::vector<flexgrid::RowId> waiting_;
    mutable std::vector<flexgrid::RowId> headers_;  // the fixed rows when the totals were last settled
};

}  // namespace qvx::grid
