// Rows of texts and their order: packed records (record.h) in an arena (arena.h), an address for every row identity,
// and the order of the identities (row_index.h). A row of ten short cells takes about 80 bytes in all.
//
// Writing a text creates a new record, unless the old one has room; the old one is then dead, and when half of the
// arena is dead, the live records are copied into a new one. Every operation that fails leaves the store as it was,
// except SetColumn.
#pragma once

#include <algorithm>
#include <array>
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
#include "widgets/flexgrid/row_watch.h"
#include "widgets/flexgrid/sparse_map.h"

namespace qvx::flexgrid {

class CellStore {
  public:
    int RowCount() const { return order_.Size(); }
    RowId IdAt(int row) const { return order_.At(row); }
    RowView Row(int row) const { return ViewOf(order_.At(row)); }
    RowView ViewOf(RowId id) const {
        const Arena::Address address = addresses_[id];
        return RowView(address == 0 ? nullptr : arena_.At(address));
    }
    CellView Cell(int row, int col) const { return Row(row)[col]; }
    // Calls visit(row, RowView) for the rows first to last, both included.
    template <class Visit>
    void ForEachRow(int first, int last, Visit&& visit) const {
        // The way to a record leads through three tables. It is gone for several rows ahead, and the records are asked
        // for, so that the processor has the next ones at hand whatever it has to wait for in this one.
        constexpr int ahead = 32;
        for (int row = first; row <= last;) {
            const std::span<const RowId> ids = order_.LeafFrom(row, std::min(last, row + ahead - 1));
            const std::uint8_t* records[ahead];
            for (std::size_t i = 0; i < ids.size(); ++i) {
                records[i] = ViewOf(ids[i]).Data();
                __builtin_prefetch(records[i]);
            }
            for (std::size_t i = 0; i < ids.size(); ++i) {
                visit(row++, RowView(records[i]));
            }
        }
    }

    void InsertEmptyRows(int at, int count);
    // Inserts one row of tab-separated cells, at most `cols` of them.
    void InsertRow(int at, TextView item, int cols);
    // Inserts rows separated by CR, LF or CR LF; a separator at the end does not start another row. Returns their
    // number. When there are more than `most`, nothing is inserted and the result is -1.
    int InsertBlock(int at, TextView block, int cols, int most);
    RowObservers& Observers() { return observers_; }
    const RowObservers& Observers() const { return observers_; }
    // These announce a change to the observers and may throw. Each must precede the calls that it is named after.
    void AnnounceRemoval(int at, int count) const;
    void AnnounceRemoval(const std::vector<bool>& marked) const;
    void AnnounceOrder() const {
        observers_.Notify([](RowFollower& rows) { rows.OrderChanges(); });
    }
    void AnnounceClear(int cols) const;

    // Calls gone(RowId) for each row before its identity is freed; `gone` must not throw.
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
    // Writes one cell in each of the rows first to last, both included, to textOf(RowView), a text that must stay valid
    // only until the next call. When that throws or memory runs out, the previous rows have been written.
    template <class TextOf>
    void SetColumn(int col, int first, int last, TextOf&& textOf) {
        order_.ForEachLeaf(first, last, [&](std::span<const RowId> ids) {
            for (const RowId id : ids) {
                StoreCell(id, col, textOf(ViewOf(id)));
            }
        });
    }
    // Writes adjacent cells of one row at once: `count` of them to the first cells of another row, whose record is not
    // in this store.
    void SetCells(int row, int firstCol, const RowView& cells, int count);
    void SetCells(int row, int firstCol, std::span<const TextView> texts);
    // Writes the same text into every cell of the range.
    void FillCells(int firstRow, int lastRow, int firstCol, int lastCol, TextView text);
    // Changes that happen all or not at all: without Commit, everything is undone, which needs no memory. Inserting,
    // removing and moving rows requires a batch that was begun for that, which takes time and memory for each existing
    // row. A batch within another is part of it, and undoes texts only. A change that no batch supports dissolves all
    // batches: nothing is undone then.
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
        // The state at the beginning of the batch.
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
    // Reorders the rows from `first` on; the identities are the existing ones.
    void Reorder(int first, std::span<const RowId> ids) noexcept {
        BeforeRowsChange();
        order_.Assign(first, ids);
    }

    // Heights; see row_index.h.
    void SetDeviation(int row, int pixels) { order_.SetDeviation(row, pixels); }
    void SetDeviations(SparseMap<int> byId, int shared) noexcept { order_.SetDeviations(std::move(byId), shared); }
    // Rows without height; see row_index.h. Only in batches begun for changes of rows.
    void SetFiltered(const std::vector<bool>& marked, int shared) { order_.SetFiltered(marked, shared); }
    void SetFiltered(int row, bool filtered, int shared) { order_.SetFiltered(row, filtered, shared); }
    void ClearFiltered() noexcept { order_.ClearFiltered(); }
    bool IsFiltered(RowId id) const { return order_.IsFiltered(id); }
    int FilteredCount() const { return order_.FilteredCount(); }
    std::int64_t ExtentBefore(int row, int shared) const { return order_.ExtentBefore(row, shared); }
    int RowAtExtent(std::int64_t y, int shared) const { return order_.PositionAt(y, shared); }

    std::size_t MemoryUsed() const;

  private:
    // Allocates identities without text; when it throws, nothing has changed.
    void TakeIds(std::span<RowId> ids);
    void ReturnId(RowId id) noexcept;
    void Discard(RowId id) noexcept;
    void Store(RowId id, std::span<const std::uint8_t> record);
    void StoreCell(RowId id, int col, TextView text);
    Arena::Address Append(Arena& arena, std::span<const std::uint8_t> record);
    // Writes the record of a row of tab-separated cells, at most `cols` of them, which belongs to no row yet.
    Arena::Address AppendItem(TextView item, int cols);
    // Inserts rows piece by piece; fill(ids) writes the texts of a piece. Undoes everything when something throws.
    template <class Fill>
    void InsertPieces(int at, int count, Fill&& fill);
    // Copies the live records into a new arena when too many are dead. A lack of memory for that is not a failure.
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

    // The number of dead bytes up to which copying is never worth it.
    static constexpr std::size_t smallWaste = 65'536;

    Arena arena_;
    // The address of each row's record by identity, 0 for a row without text. Identities without a row form a chain of
    // free ones.
    std::vector<Arena::Address> addresses_;
    RowId firstFree_ = noRow;
    RowIndex order_;
    RecordBuilder builder_;
    RecordBuilder given_;          // of the cells that a row is about to get
    std::vector<CellView> cells_;  // cells of the row being written; kept for its memory
    RowObservers observers_;
    std::size_t tidyAt_ = 0;  // dead bytes before the next attempt, after one that found no memory

    int batches_ = 0;                                     // number of open batches, one within the other
    std::uint64_t batchNumber_ = 0;                       // increases when batches are dissolved
    bool rowsAreKept_ = false;                            // by one of the open batches
    std::vector<std::pair<RowId, Arena::Address>> undo_;  // texts written in the batches, in order
};

}  // namespace qvx::flexgrid
