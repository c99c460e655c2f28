#include "widgets/flexgrid/cell_store.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <optional>

#include "common/latin1.h"
#include "common/run_time_error.h"
#include "common/text_scan.h"

namespace qvx::flexgrid {

// ---- Identities ----------------------------------------------------------------------------------------------------

void CellStore::TakeIds(std::span<RowId> ids) {
    std::size_t taken = 0;
    while (taken < ids.size() && firstFree_ != noRow) {
        ids[taken] = firstFree_;
        firstFree_ = addresses_[firstFree_];
        addresses_[ids[taken++]] = 0;
    }
    const std::size_t fresh = ids.size() - taken;
    try {
        if (fresh == 1) {
            addresses_.push_back(0);
        } else {
            addresses_.resize(addresses_.size() + fresh);
        }
    } catch (...) {
        while (taken > 0) {
            ReturnId(ids[--taken]);
        }
        throw;
    }
    for (std::size_t i = 0; i < fresh; ++i) {
        ids[taken + i] = static_cast<RowId>(addresses_.size() - fresh + i);
    }
}

void CellStore::ReturnId(RowId id) noexcept {
    addresses_[id] = firstFree_;
    firstFree_ = id;
}

void CellStore::Discard(RowId id) noexcept {
    observers_.Notify([&](RowFollower& rows) { rows.RowGone(id); });
    arena_.Release(ViewOf(id).Size());
    ReturnId(id);
}

// ---- Records -------------------------------------------------------------------------------------------------------

Arena::Address CellStore::Append(Arena& arena, std::span<const std::uint8_t> record) {
    if (record.empty()) {
        return 0;
    }
    const Arena::Address address = arena.Allocate(record.size());
    std::memcpy(arena.At(address), record.data(), record.size());
    return address;
}

Arena::Address CellStore::AppendItem(TextView item, int cols) {
    const auto packed = PackShortItem(item, cols, arena_.Reserve(RoomForShortItem(item, cols)));
    if (!packed) {
        return Append(arena_, builder_.FromOtherItem(item, cols));
    }
    return packed->size == 0 ? 0 : arena_.Take(packed->size);
}

void CellStore::Store(RowId id, std::span<const std::uint8_t> record) {
    const Arena::Address old = addresses_[id];
    if (batches_ > 0) {
        undo_.reserve(undo_.size() == undo_.capacity() ? 2 * undo_.size() + 16 : 0);
        const Arena::Address address = Append(arena_, record);
        undo_.emplace_back(id, old);
        addresses_[id] = address;
        return;
    }
    const std::size_t oldSize = ViewOf(id).Size();
    if (old != 0 && !record.empty() && arena_.Resize(old, oldSize, record.size())) {
        std::copy(record.begin(), record.end(), arena_.At(old));
    } else {
        addresses_[id] = Append(arena_, record);
        arena_.Release(oldSize);
    }
    Tidy();
}

void CellStore::StoreCell(RowId id, int col, TextView text) {
    const RowView row = ViewOf(id);
    observers_.Notify([&](RowFollower& rows) { rows.CellsChange(id, row, col, 1); });
    const ShortCellEdit edit(row, col, text);
    if (batches_ > 0 || !edit.Possible()) {
        Store(id, builder_.WithCell(row, col, text));
        return;
    }
    const Arena::Address old = addresses_[id];
    if (!arena_.Resize(old, edit.OldSize(), edit.NewSize())) {
        const Arena::Address moved = arena_.Allocate(edit.NewSize());
        std::memcpy(arena_.At(moved), arena_.At(old), edit.OldSize());
        addresses_[id] = moved;
        arena_.Release(edit.OldSize());
    }
    edit.Apply(arena_.At(addresses_[id]));
    Tidy();
}

void CellStore::CopyLiving() noexcept {
    const std::size_t dead = arena_.Dead();
    if (batches_ > 0 || dead <= tidyAt_) {
        return;
    }
    try {
        Arena fresh;
        std::vector<Arena::Address> addresses(addresses_);
        order_.ForEachLeaf(0, RowCount() - 1, [&](std::span<const RowId> ids) {
            for (const RowId id : ids) {
                if (addresses[id] != 0) {
                    addresses[id] = Append(fresh, {arena_.At(addresses[id]), ViewOf(id).Size()});
                }
            }
        });
        arena_ = std::move(fresh);
        addresses_.swap(addresses);
        tidyAt_ = 0;
    } catch (const std::bad_alloc&) {
        tidyAt_ = 2 * dead;
    } catch (const RunTimeError&) {
        tidyAt_ = 2 * dead;
    }
}

// ---- Rows ----------------------------------------------------------------------------------------------------------

template <class Fill>
void CellStore::InsertPieces(int at, int count, Fill&& fill) {
    if (count > 0 && at < RowCount()) {
        AnnounceOrder();
    }
    if (count > 0) {
        BeforeRowsChange();
    }
    int done = 0;
    try {
        while (done < count) {
            std::array<RowId, RowIndex::leafCapacity> buffer;
            const std::span ids(buffer.data(), std::min(buffer.size(), static_cast<std::size_t>(count - done)));
            TakeIds(ids);
            try {
                observers_.Notify([&](RowFollower& rows) { rows.RowsCome(ids); });
                fill(ids);
                order_.Insert(at + done, ids);
            } catch (...) {
                for (const RowId id : ids) {
                    Discard(id);
                }
                throw;
            }
            done += static_cast<int>(ids.size());
        }
    } catch (...) {
        RemoveRows(at, done, [](RowId) {});
        throw;
    }
}

void CellStore::InsertEmptyRows(int at, int count) {
    InsertPieces(at, count, [](std::span<const RowId>) {});
}

void CellStore::InsertRow(int at, TextView item, int cols) {
    InsertPieces(at, 1, [&](std::span<const RowId> ids) { addresses_[ids[0]] = AppendItem(item, cols); });
}

int CellStore::InsertBlock(int at, TextView block, int cols, int most) {
    // Removes the first row from the block.
    const auto takeRow = [](TextView& rest) {
        const std::size_t end = ScannedFor(u'\r', u'\n', u'\n').Find(rest, 0);
        const TextView row = rest.substr(0, end);
        if (end == rest.size()) {
            rest = {};
        } else {
            const bool pair = rest[end] == u'\r' && end + 1 < rest.size() && rest[end + 1] == u'\n';
            rest.remove_prefix(end + (pair ? 2 : 1));
        }
        return row;
    };
    int count = 0;
    for (TextView rest = block; !rest.empty(); ++count) {
        if (count == most) {
            return -1;
        }
        takeRow(rest);
    }
    InsertPieces(at, count, [&](std::span<const RowId> ids) {
        for (const RowId id : ids) {
            addresses_[id] = AppendItem(takeRow(block), cols);
        }
    });
    return count;
}

void CellStore::AnnounceRemoval(int at, int count) const {
    if (!observers_ || count <= 0) {
        return;
    }
    observers_.Notify([&](RowFollower& rows) { rows.OrderChanges(); });
    order_.ForEachLeaf(at, at + count - 1, [&](std::span<const RowId> ids) {
        for (const RowId id : ids) {
            observers_.Notify([&](RowFollower& rows) { rows.RowLeaves(id, ViewOf(id)); });
        }
    });
}

void CellStore::AnnounceRemoval(const std::vector<bool>& marked) const {
    if (!observers_) {
        return;
    }
    observers_.Notify([&](RowFollower& rows) { rows.OrderChanges(); });
    for (std::size_t row = 0; row < marked.size(); ++row) {
        if (marked[row]) {
            const RowId id = IdAt(static_cast<int>(row));
            observers_.Notify([&](RowFollower& rows) { rows.RowLeaves(id, ViewOf(id)); });
        }
    }
}

void CellStore::AnnounceClear(int cols) const {
    if (!observers_) {
        return;
    }
    order_.ForEachLeaf(0, RowCount() - 1, [&](std::span<const RowId> ids) {
        for (const RowId id : ids) {
            observers_.Notify([&](RowFollower& rows) { rows.CellsChange(id, ViewOf(id), 0, cols); });
        }
    });
}

void CellStore::MoveRow(int from, int to) {
    AnnounceOrder();
    BeforeRowsChange();
    const RowId id = IdAt(from);
    const int deviation = order_.Deviation(id);
    const bool filtered = order_.IsFiltered(id);
    order_.ReserveForInsert();
    order_.Remove(from, 1);
    if (filtered) {
        order_.RestoreFiltered(id);
    }
    order_.Insert(to, std::span(&id, 1));
    // Removal has made room for this entry, so that setting it again cannot fail.
    order_.SetDeviation(to, deviation);
}

// ---- Texts ---------------------------------------------------------------------------------------------------------

void CellStore::SetCells(int row, int firstCol, const RowView& cells, int count) {
    const RowId id = IdAt(row);
    const RowView old = ViewOf(id);
    observers_.Notify([&](RowFollower& rows) { rows.CellsChange(id, old, firstCol, count); });
    std::array<std::uint8_t, longestShortRecord> record;
    if (cells.Count() <= count) {
        if (firstCol == 0 && old.Count() <= count) {
            Store(id, {cells.Data(), cells.Size()});
            return;
        }
        if (const auto size = JoinShort(old, firstCol, firstCol + count, cells, record.data())) {
            Store(id, {record.data(), *size});
            return;
        }
    }
    const auto first = static_cast<std::size_t>(firstCol);
    const auto fresh = static_cast<std::size_t>(count);
    cells_.assign(std::max(static_cast<std::size_t>(old.Count()), first + fresh), CellView());
    for (int col = 0; col < old.Count(); ++col) {
        cells_[static_cast<std::size_t>(col)] = old[col];
    }
    for (std::size_t i = 0; i < fresh; ++i) {
        cells_[first + i] = cells[static_cast<int>(i)];
    }
    Store(id, builder_.FromCells(cells_));
}

void CellStore::SetCells(int row, int firstCol, std::span<const TextView> texts) {
    SetCells(row, firstCol, RowView(given_.FromTexts(texts)), static_cast<int>(texts.size()));
}

void CellStore::FillCells(int firstRow, int lastRow, int firstCol, int lastCol, TextView text) {
    const std::vector<TextView> texts(static_cast<std::size_t>(lastCol - firstCol + 1), text);
    const RowView cells(given_.FromTexts(texts));
    Batch batch(*this);
    for (int row = firstRow; row <= lastRow; ++row) {
        SetCells(row, firstCol, cells, static_cast<int>(texts.size()));
    }
    batch.Commit();
}

CellStore::Batch::Batch(CellStore& store, Reach reach)
    : store_(store),
      number_(store.batchNumber_),
      firstUndo_(store.undo_.size()),
      used_(store.arena_.Used()),
      dead_(store.arena_.Dead()) {
    if (reach == Reach::rows && store.batches_ == 0) {
        rows_ = std::make_unique<Rows>();
        rows_->addresses = store.addresses_;
        rows_->firstFree = store.firstFree_;
        rows_->order.CopyFrom(store.order_);
        store.rowsAreKept_ = true;
    }
    ++store.batches_;
}

CellStore::Batch::~Batch() {
    if (!open_ || Dissolved()) {
        return;
    }
    if (rows_) {
        store_.addresses_.swap(rows_->addresses);
        store_.firstFree_ = rows_->firstFree;
        store_.order_.Swap(rows_->order);
        store_.rowsAreKept_ = false;
    } else {
        // In reverse order, so that a row that was written twice gets its first record back.
        for (; store_.undo_.size() > firstUndo_; store_.undo_.pop_back()) {
            store_.addresses_[store_.undo_.back().first] = store_.undo_.back().second;
        }
    }
    store_.arena_.ReleaseSince(used_, dead_);
    if (--store_.batches_ == 0) {
        store_.undo_ = {};
    }
}

void CellStore::Batch::Commit() noexcept {
    open_ = false;
    if (Dissolved() || --store_.batches_ > 0) {
        return;
    }
    for (const auto& [id, address] : store_.undo_) {
        if (address != 0) {
            store_.arena_.Release(RowView(store_.arena_.At(address)).Size());
        }
    }
    store_.undo_ = {};
    store_.rowsAreKept_ = false;
    store_.Tidy();
}

void CellStore::DissolveBatches() noexcept {
    if (batches_ > 0) {
        ++batchNumber_;
        batches_ = 0;
        rowsAreKept_ = false;
        undo_ = {};
    }
}

void CellStore::TruncateColumns(int cols) noexcept {
    observers_.Notify([&](RowFollower& rows) { rows.ColumnsCut(cols); });
    DissolveBatches();
    order_.ForEachLeaf(0, RowCount() - 1, [&](std::span<const RowId> ids) {
        for (const RowId id : ids) {
            const RowView row = ViewOf(id);
            if (row.Count() <= cols) {
                continue;
            }
            const std::size_t before = row.Size();
            const std::size_t after = TruncateRecord(arena_.At(addresses_[id]), cols);
            if (after == 0) {
                arena_.Release(before);
                addresses_[id] = 0;
            } else {
                arena_.Resize(addresses_[id], before, after);
            }
        }
    });
    Tidy();
}

void CellStore::MoveColumn(int from, int to) {
    DissolveBatches();
    Arena fresh;
    std::vector<Arena::Address> addresses(addresses_);
    const auto source = static_cast<std::size_t>(from);
    const auto target = static_cast<std::size_t>(to);
    order_.ForEachLeaf(0, RowCount() - 1, [&](std::span<const RowId> ids) {
        for (const RowId id : ids) {
            const RowView row = ViewOf(id);
            if (row.Count() == 0) {
                continue;
            }
            cells_.assign(std::max({static_cast<std::size_t>(row.Count()), source + 1, target + 1}), CellView());
            for (int col = 0; col < row.Count(); ++col) {
                cells_[static_cast<std::size_t>(col)] = row[col];
            }
            const auto begin = cells_.begin();
            if (source < target) {
                std::rotate(begin + from, begin + from + 1, begin + to + 1);
            } else {
                std::rotate(begin + to, begin + from, begin + from + 1);
            }
            addresses[id] = Append(fresh, builder_.FromCells(cells_));
        }
    });
    observers_.Notify([&](RowFollower& rows) { rows.ColumnMoves(from, to); });
    arena_ = std::move(fresh);
    addresses_.swap(addresses);
}

void CellStore::ClearText() noexcept {
    DissolveBatches();
    order_.ForEachLeaf(0, RowCount() - 1, [&](std::span<const RowId> ids) {
        for (const RowId id : ids) {
            addresses_[id] = 0;
        }
    });
    arena_ = Arena();
}

std::size_t CellStore::MemoryUsed() const {
    return arena_.MemoryUsed() + addresses_.capacity() * sizeof(Arena::Address) + order_.MemoryUsed();
}

}  // namespace qvx::flexgrid
