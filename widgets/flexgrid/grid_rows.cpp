// Inserting, removing and moving rows, and moving columns.
#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>

#include "widgets/flexgrid/grid.h"
#include "widgets/flexgrid/grid_errors.h"

namespace qvx::flexgrid {

int Grid::InsertionPoint(int index) const {
    if (index < atEnd || index > Rows()) {
        RefuseRow();
    }
    if (index != atEnd && index < fixedRows_) {
        RefuseFixedRowAddition();
    }
    return index == atEnd ? Rows() : index;
}

void Grid::AddItem(TextView item, int index) {
    const int at = InsertionPoint(index);
    if (!CellsFit(Rows() + 1, Cols())) {
        RefuseCells();
    }
    std::optional<CellsMoving> moving;
    if (at <= row_) {
        moving.emplace(*this);
    }
    store_.InsertRow(at, item, Cols());
    RowsAdded(at, 1);
}

// New rows never move the cursor, unless a fixed row has been waiting for them or there were only headers.
void Grid::RowsAdded(int at, int count) {
    ++structureVersion_;
    LayoutChanged(at, 0);
    if (wantFixedRow_) {
        ChangeShape([&] { return CurrentShape(); }, [](const Shape&) {});
    }
    LeaveHeader(Rows() - count);
}

int Grid::AddItems(TextView block, int index) {
    const int at = InsertionPoint(index);
    const std::int64_t byCells = Cols() == 0 ? maxRows : maxCells / Cols();
    const int room = static_cast<int>(std::min<std::int64_t>(maxRows, byCells)) - Rows();
    std::optional<CellsMoving> moving;
    if (at <= row_) {
        moving.emplace(*this);
    }
    const int added = store_.InsertBlock(at, block, Cols(), room);
    if (added < 0) {
        RefuseCells();
    }
    RowsAdded(at, added);
    return added;
}

void Grid::RemoveItem(int index) {
    const auto check = [&] {
        CheckRow(index);
        if (index < fixedRows_) {
            RefuseFixedRowRemoval();
        }
        if (Rows() - fixedRows_ <= 1) {
            RefuseLastRow();
        }
    };
    ChangeShape(
        [&] {
            check();
            return Shape{Rows() - 1, Cols(), fixedRows_, fixedCols_};
        },
        [&](const Shape&) { RemoveStored(index, 1); });
}

void Grid::RemoveStored(int at, int count) {
    store_.AnnounceRemoval(at, count);
    store_.RemoveRows(at, count, [this](RowId id) { DropRowSettings(id); });
}

int Grid::RemoveMarked(std::vector<bool>& marked, int count) {
    if (count == 0) {
        return 0;
    }
    if (count == Rows() - fixedRows_) {
        marked[static_cast<std::size_t>(fixedRows_)] = false;
        if (--count == 0) {
            return 0;
        }
    }
    const std::uint64_t version = structureVersion_;
    ChangeShape(
        [&] {
            return Shape{Rows() - count, Cols(), fixedRows_, fixedCols_};
        },
        [&](const Shape&) {
            if (version != structureVersion_) {
                Refuse(errors::invalidProcedureCall, u"Rows were changed while others were being removed.");
            }
            store_.AnnounceRemoval(marked);
            store_.RemoveMarked(marked, [this](RowId id) { DropRowSettings(id); });
        });
    return count;
}

void Grid::DropRowSettings(RowId id) noexcept {
    heights_.Erase(id);
    rowData_.Erase(id);
    mergeRows_.Erase(id);
    formats_.RemoveRow(id);
}

void Grid::Clear() {
    const CellsMoving moving(*this);
    store_.AnnounceClear(Cols());
    store_.ClearText();
    formats_.Clear();
    ClearSortMarks();
    ++structureVersion_;
    NotifyChange(GridChange::texts, {0, 0, Rows() - 1, Cols() - 1});
}

void Grid::SetRowPosition(int row, int position) {
    CheckRow(row);
    CheckRow(position);
    if (row != position) {
        const CellsMoving moving(*this);
        store_.MoveRow(row, position);
        if ((row < fixedRows_) != (position < fixedRows_)) {
            ShowAllRows();
        }
        ++structureVersion_;
        LayoutChanged(std::min(row, position), 0);
    }
}

void Grid::SetColPosition(int col, int position) {
    CheckCol(col);
    CheckCol(position);
    if (col == position) {
        return;
    }
    const CellsMoving moving(*this);
    FormatTable moved = formats_;
    moved.MoveColumn(col, position);
    store_.MoveColumn(col, position);
    formats_ = std::move(moved);
    columns_.Move(col, position);
    ++structureVersion_;
    LayoutChanged(0, std::min(col, position));
}

}  // namespace qvx::flexgrid
