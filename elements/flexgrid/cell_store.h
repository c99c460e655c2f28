// Rows of texts and their order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "common/text.h"
#include "elements/flexgrid/cell_view.h"
#include "elements/flexgrid/sparse_map.h"

namespace qvx::flexgrid {

class RowView {
  public:
    explicit RowView(const std::vector<Text>* cells) : cells_(cells) {}
    // Any column from 0 on; empty behind the last that holds text.
    CellView operator[](int col) const {
        const auto c = static_cast<std::size_t>(col);
        return c < cells_->size() ? CellView((*cells_)[c].data(), (*cells_)[c].size()) : CellView();
    }

  private:
    const std::vector<Text>* cells_;
};

class CellStore {
  public:
    int RowCount() const { return static_cast<int>(order_.size()); }
    RowId IdAt(int row) const { return order_[static_cast<std::size_t>(row)]; }
    CellView Cell(int row, int col) const { return Row(row)[col]; }
    RowView Row(int row) const { return RowView(&rows_[IdAt(row)]); }
    template <class Visit>
    void ForEachRow(int first, int last, Visit&& visit) const {
        for (int row = first; row <= last; ++row) {
            visit(row, Row(row));
        }
    }

    void InsertEmptyRows(int at, int count);
    // One row of tab-separated cells, at most `cols` of them.
    void InsertRow(int at, TextView item, int cols);
    // Rows separated by CR, LF or CR LF; a separator at the end makes no further row. At most `maxCount` may come, else
    // nothing is inserted and -1 returned.
    int InsertBlock(int at, TextView block, int cols, int maxCount);
    // gone(RowId) for each.
    template <class Gone>
    void RemoveRows(int at, int count, Gone&& gone) {
        for (int i = 0; i < count; ++i) {
            gone(IdAt(at + i));
        }
        Erase(at, count);
    }
    template <class Gone>
    void RemoveMarked(const std::vector<bool>& marked, Gone&& gone) {
        for (int row = RowCount() - 1; row >= 0; --row) {
            if (marked[static_cast<std::size_t>(row)]) {
                RemoveRows(row, 1, gone);
            }
        }
    }
    void SetCell(int row, int col, TextView text) { SetCells(row, col, std::span(&text, 1)); }
    // Neighbouring cells of one row at once.
    void SetCells(int row, int firstCol, std::span<const TextView> texts);
    // Writes of several rows that must all happen or not at all; without Commit everything is taken back.
    class Batch {
      public:
        explicit Batch(CellStore& store) : store_(store) {}
        void Commit() noexcept {}

      private:
        [[maybe_unused]] CellStore& store_;
    };
    // The same text in every cell of the range.
    void FillCells(int firstRow, int lastRow, int firstCol, int lastCol, TextView text);
    void TruncateColumns(int cols) noexcept;
    void MoveColumn(int from, int to);
    void MoveRow(int from, int to);
    void ClearText() noexcept;
    // The rows from `first` on take this order; the identities are those that are there.
    void Reorder(int first, std::span<const RowId> ids) noexcept;

    // Heights of rows as deviations in pixels from a height that all share.
    void SetDeviation(int row, int pixels);
    void SetDeviations(SparseMap<int> byId);
    std::int64_t ExtentBefore(int row, int sharedPixels) const;
    // The row covering the position; RowCount behind the last.
    int RowAtExtent(std::int64_t y, int sharedPixels) const;

    std::size_t MemoryUsed() const;

  private:
    void Erase(int at, int count);

    std::vector<std::vector<Text>> rows_;
    std::vector<RowId> free_;
    std::vector<RowId> order_;
    SparseMap<int> deviations_;
};

}  // namespace qvx::flexgrid
