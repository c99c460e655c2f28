// Rows of texts and their order: packed records (record.h) in an arena (arena.h), an address for every row identity,
// and the order of the identities (row_index.h). A row of ten short cells takes about 80 bytes in all.
//
// A text that is written makes a new record, unless the old one has room; the old one is dead, and when half of the
// arena is dead the living are copied into a new one. Whatever fails leaves the store as it was, but for SetColumn.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "common/text.h"
#include "widgets/flexgrid/arena.h"
#include "widgets/flexgrid/cell_view.h"
#include "widgets/flexgrid/record.h"
#include "widgets/flexgrid/row_index.h"
#include "widgets/flexgrid/sparse_map.h"

namespace qvx::flexgrid {

class CellStore {
  public:
    int RowCount() const { return order_.Size(); }
    RowId IdAt(int row) const { return order_.At(row); }
    RowView Row(int row) const { return ViewOf(order_.At(row)); }
    CellView Cell(int row, int col) const { return Row(row)[col]; }
    // visit(row, RowView) for rows first to last, both included.
    template <class Visit>
    void ForEachRow(int first, int last, Visit&& visit) const {
        int row = first;
        order_.ForEachLeaf(first, last, [&](std::span<const RowId> ids) {
            for (const RowId id : ids) {
                visit(row++, ViewOf(id));
            }
        });
    }

    void InsertEmptyRows(int at, int count);
    // One row of tab-separated cells, at most `cols` of them.
    void InsertRow(int at, TextView item, int cols);
    // Rows separated by CR, LF or CR LF; a separator at the end makes no further row. Returns how many there were. When
    // they are more than `most`, nothing is inserted and the answer is -1.
    int InsertBlock(int at, TextView block, int cols, int most);
    // gone(RowId) for each row, before its number is free; must not throw.
    template <class Gone>
    void RemoveRows(int at, int count, Gone&& gone) noexcept {
        if (count > 0) {
            BeforeRowsChange();
        }
        order_.ForEachLeaf(at, at + count - 1, [&](std::span<const RowId> ids) {
            for (const RowId id : ids) {
                gone(id);
                Discard(id);
            }
        });
        order_.Remove(at, count);
        Tidy();
    }
    // The same for the rows whose mark is set.
    template <class Gone>
    void RemoveMarked(const std::vector<bool>& marked, Gone&& gone) noexcept {
        BeforeRowsChange();
        std::size_t row = 0;
        order_.ForEachLeaf(0, RowCount() - 1, [&](std::span<const RowId> ids) {
            for (const RowId id : ids) {
                if (marked[row++]) {
                    gone(id);
                    Discard(id);
                }
            }
        });
        order_.RemoveMarked(marked);
        Tidy();
    }

    void SetCell(int row, int col, TextView text) { StoreCell(order_.At(row), col, text); }
    // One cell in each of the rows first to last, both included: it becomes textOf(RowView), a text that need last no
    // longer than until the next call. When that throws or memory runs out, the rows before have theirs.
    template <class TextOf>
    void SetColumn(int col, int first, int last, TextOf&& textOf) {
        order_.ForEachLeaf(first, last, [&](std::span<const RowId> ids) {
            for (const RowId id : ids) {
                StoreCell(id, col, textOf(ViewOf(id)));
            }
        });
    }
    // Neighbouring cells of one row at once.
    void SetCells(int row, int firstCol, std::span<const TextView> texts);
    // The same text in every cell of the range.
    void FillCells(int firstRow, int lastRow, int firstCol, int lastCol, TextView text);
    // Changes that happen all or not at all: without Commit everything is taken back, which needs no memory. Rows come,
    // go and move in one that was begun for that, which takes time and memory for each row there is. A batch within
    // another is part of it, and takes back texts alone. What no batch covers dissolves all: nothing is taken back
    // then.
    class Batch {
      public:
        enum class Reach { texts, rows };
        explicit Batch(CellStore& store, Reach reach = Reach::texts);
        ~Batch();
        Batch(const Batch&) = delete;
        Batch& operator=(const Batch&) = delete;
        void Commit() noexcept;
        bool Dissolved() const { return number_ != store_.batchNumber_; }

      private:
        // What was there at the beginning.
        struct Rows {
            std::vector<Arena::Address> addresses;
            RowId firstFree = noRow;
            RowIndex order;
        };

        CellStore& store_;
        std::uint64_t number_;
        std::size_t firstUndo_;
        std::size_t used_;
        std::size_t dead_;
        std::unique_ptr<Rows> rows_;
        bool open_ = true;
    };

    void TruncateColumns(int cols) noexcept;
    void MoveColumn(int from, int to);
    void MoveRow(int from, int to);
    void ClearText() noexcept;
    // The rows from `first` on take this order; the identities are those that are there.
    void Reorder(int first, std::span<const RowId> ids) noexcept {
        BeforeRowsChange();
        order_.Assign(first, ids);
    }

    // Heights, see row_index.h.
    void SetDeviation(int row, int pixels) { order_.SetDeviation(row, pixels); }
    void SetDeviations(SparseMap<int> byId) noexcept { order_.SetDeviations(std::move(byId)); }
    std::int64_t ExtentBefore(int row, int shared) const { return order_.ExtentBefore(row, shared); }
    int RowAtExtent(std::int64_t y, int shared) const { return order_.PositionAt(y, shared); }

    std::size_t MemoryUsed() const;

  private:
    RowView ViewOf(RowId id) const {
        const Arena::Address address = addresses_[id];
        return RowView(address == 0 ? nullptr : arena_.At(address));
    }
    // New identities without text; nothing has changed when it throws.
    void TakeIds(std::span<RowId> ids);
    void ReturnId(RowId id) noexcept;
    void Discard(RowId id) noexcept;
    void Store(RowId id, std::span<const std::uint8_t> record);
    void StoreCell(RowId id, int col, TextView text);
    Arena::Address Append(Arena& arena, std::span<const std::uint8_t> record);
    // Inserts rows piece by piece; fill(ids) gives a piece its texts. Takes everything back when something throws.
    template <class Fill>
    void InsertPieces(int at, int count, Fill&& fill);
    // Copies the living records into a new arena when too many are dead. Not having the memory for it is no failure.
    void Tidy() noexcept {
        if (arena_.Dead() > smallWaste && arena_.Dead() > arena_.Used() / 2) {
            CopyLiving();
        }
    }
    void CopyLiving() noexcept;
    void BeforeRowsChange() noexcept {
        if (!rowsAreKept_) {
            DissolveBatches();
        }
    }
    void DissolveBatches() noexcept;

    // Dead bytes that are never worth copying the living for.
    static constexpr std::size_t smallWaste = 65'536;

    Arena arena_;
    // By identity: where the row's record lies, 0 for a row without text. Those of no row form a chain of the free.
    std::vector<Arena::Address> addresses_;
    RowId firstFree_ = noRow;
    RowIndex order_;
    RecordBuilder builder_;
    std::vector<CellView> cells_;  // of the row being written; kept for its memory
    std::size_t tidyAt_ = 0;       // dead bytes before the next attempt, after one that found no memory

    int batches_ = 0;                                     // open, one within the other
    std::uint64_t batchNumber_ = 0;                       // grows when they are dissolved
    bool rowsAreKept_ = false;                            // by one of them
    std::vector<std::pair<RowId, Arena::Address>> undo_;  // texts written in the batches, in order
};

}  // namespace qvx::flexgrid
