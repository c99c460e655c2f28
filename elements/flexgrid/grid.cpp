#include "elements/flexgrid/grid.h"

#include <algorithm>

#include "elements/flexgrid/grid_errors.h"

namespace qvx::flexgrid {

namespace {

CellRange Union(const CellRange& a, const CellRange& b) {
    if (a.Empty() || b.Empty()) {
        return a.Empty() ? b : a;
    }
    return {std::min(a.top, b.top), std::min(a.left, b.left), std::max(a.bottom, b.bottom), std::max(a.right, b.right)};
}

}  // namespace

Grid::Grid() : columns_(2), metrics_(&FixedTextMetrics::Default()) { store_.InsertEmptyRows(0, 2); }

// ---- Listeners -----------------------------------------------------------------------------------------------------

void Grid::AddListener(GridListener* listener) { listeners_.push_back(listener); }

void Grid::RemoveListener(GridListener* listener) {
    const auto found = std::find(listeners_.begin(), listeners_.end(), listener);
    if (found == listeners_.end()) {
        return;
    }
    if (telling_ > 0) {
        *found = nullptr;  // a loop over the list is running
    } else {
        listeners_.erase(found);
    }
}

template <class Call>
void Grid::Tell(Call call) {
    struct Telling {
        Grid& grid;
        explicit Telling(Grid& g) : grid(g) { ++grid.telling_; }
        ~Telling() {
            if (--grid.telling_ == 0) {
                std::erase(grid.listeners_, nullptr);
            }
        }
    } const telling(*this);
    for (std::size_t i = 0; i < listeners_.size(); ++i) {
        if (listeners_[i]) {
            call(*listeners_[i]);
        }
    }
}

void Grid::TellChange(GridChange change, const CellRange& range) {
    if (!listeners_.empty()) {
        Tell([&](GridListener& listener) { listener.Invalidated(change, range); });
    }
}

int Grid::AskOrder(int row1, int row2) {
    int result = 0;
    bool answered = false;
    Tell([&](GridListener& listener) { answered = answered || listener.Compare(row1, row2, result); });
    return result;
}

void Grid::LookChanged() { TellChange(GridChange::look, {0, 0, Rows() - 1, Cols() - 1}); }

void Grid::LayoutChanged(int row, int col) { TellChange(GridChange::layout, {row, col, Rows() - 1, Cols() - 1}); }

// ---- Counts --------------------------------------------------------------------------------------------------------

void Grid::CheckRow(int row) const {
    if (row < 0 || row >= Rows()) {
        RefuseRow();
    }
}

void Grid::CheckCol(int col) const {
    if (col < 0 || col >= Cols()) {
        RefuseCol();
    }
}

void Grid::CheckCell(int row, int col) const {
    if (row < 0 || row >= Rows() || col < 0 || col >= Cols()) {
        RefuseSubscript();
    }
}

void Grid::CheckCounts(const Shape& shape) {
    if (shape.rows < 0 || shape.cols < 0 || shape.fixedRows < 0 || shape.fixedCols < 0) {
        RefuseValue();
    }
    if (shape.fixedRows > 0 && shape.fixedRows >= shape.rows) {
        RefuseFixedRows();
    }
    if (shape.fixedCols > 0 && shape.fixedCols >= shape.cols) {
        RefuseFixedCols();
    }
    if (shape.rows > maxRows || shape.cols > maxCols || static_cast<std::int64_t>(shape.rows) * shape.cols > maxCells) {
        RefuseCells();
    }
}

Grid::Shape Grid::WithWantedFixed(Shape shape) const {
    if (wantFixedRow_ && shape.rows >= 2) {
        shape.fixedRows = 1;
    }
    if (wantFixedCol_ && shape.cols >= 2) {
        shape.fixedCols = 1;
    }
    return shape;
}

Grid::Cursor Grid::Fitted(Cursor cursor, const Shape& shape) const {
    // Only a fixed count that grows pushes the cursor out: a program may have put it on a header on purpose.
    const int minRow = shape.fixedRows > fixedRows_ ? shape.fixedRows : 0;
    const int minCol = shape.fixedCols > fixedCols_ ? shape.fixedCols : 0;
    const auto fit = [](int value, int low, int count) { return count == 0 ? 0 : std::clamp(value, low, count - 1); };
    return {fit(cursor.row, minRow, shape.rows), fit(cursor.col, minCol, shape.cols),
            fit(cursor.rowSel, minRow, shape.rows), fit(cursor.colSel, minCol, shape.cols)};
}

void Grid::StoreShape(const Shape& shape) {
    wantFixedRow_ = wantFixedRow_ && shape.fixedRows == 0;
    wantFixedCol_ = wantFixedCol_ && shape.fixedCols == 0;
    fixedRows_ = shape.fixedRows;
    fixedCols_ = shape.fixedCols;
    topRow_ = std::clamp(topRow_, fixedRows_, std::max(fixedRows_, Rows() - 1));
    leftCol_ = std::clamp(leftCol_, fixedCols_, std::max(fixedCols_, Cols() - 1));
    InvalidateColumnPositions();
    ++structureVersion_;
}

void Grid::ChangeShape(const std::function<Shape()>& target, const std::function<void(const Shape&)>& change) {
    Shape shape = WithWantedFixed(target());
    CheckCounts(shape);
    const Cursor before = Now();
    Cursor after = Fitted(before, shape);
    const bool leaves = after.row != before.row || after.col != before.col;
    if (leaves) {
        Tell([](GridListener& listener) { listener.LeaveCell(); });
        shape = WithWantedFixed(target());
        CheckCounts(shape);
        after = Fitted(Now(), shape);
    }
    try {
        change(shape);
    } catch (...) {
        if (leaves) {
            Tell([](GridListener& listener) { listener.EnterCell(); });
        }
        throw;
    }
    StoreShape(shape);
    std::tie(row_, col_, rowSel_, colSel_) = std::tie(after.row, after.col, after.rowSel, after.colSel);
    LayoutChanged(0, 0);
    if (leaves) {
        Tell([](GridListener& listener) { listener.EnterCell(); });
        Tell([](GridListener& listener) { listener.RowColChange(); });
    }
    if (before != after) {
        Tell([](GridListener& listener) { listener.SelChange(); });
    }
}

void Grid::SetRows(int count) {
    if (count == Rows()) {
        return;
    }
    ChangeShape(
        [&] {
            return Shape{count, Cols(), fixedRows_, fixedCols_};
        },
        [&](const Shape& shape) {
            if (shape.rows > Rows()) {
                store_.InsertEmptyRows(Rows(), shape.rows - Rows());
            } else {
                store_.RemoveRows(shape.rows, Rows() - shape.rows, [this](RowId id) { DropRowSettings(id); });
            }
        });
}

void Grid::SetCols(int count) {
    if (count == Cols()) {
        return;
    }
    ChangeShape(
        [&] {
            return Shape{Rows(), count, fixedRows_, fixedCols_};
        },
        [&](const Shape& shape) {
            if (shape.cols < Cols()) {
                formats_.TruncateColumns(shape.cols);
                store_.TruncateColumns(shape.cols);
            }
            columns_.resize(static_cast<std::size_t>(shape.cols), newColumn_);
        });
}

void Grid::SetFixedRows(int count) {
    if (Rows() == 0 && (count == 0 || count == 1)) {
        wantFixedRow_ = count == 1;
        return;
    }
    ChangeShape([&] { return wantFixedRow_ = false, Shape{Rows(), Cols(), count, fixedCols_}; }, [](const Shape&) {});
}

void Grid::SetFixedCols(int count) {
    if (Cols() == 0 && (count == 0 || count == 1)) {
        wantFixedCol_ = count == 1;
        return;
    }
    ChangeShape([&] { return wantFixedCol_ = false, Shape{Rows(), Cols(), fixedRows_, count}; }, [](const Shape&) {});
}

// ---- Cursor and selection ------------------------------------------------------------------------------------------

void Grid::MoveCursor(Cursor target) {
    const Cursor before = Now();
    if (target == before) {
        return;
    }
    const bool leaves = target.row != before.row || target.col != before.col;
    if (leaves) {
        Tell([](GridListener& listener) { listener.LeaveCell(); });
        target = Fitted(target, CurrentShape());  // a listener may have made the grid smaller
    }
    const CellRange old = Selection();
    std::tie(row_, col_, rowSel_, colSel_) = std::tie(target.row, target.col, target.rowSel, target.colSel);
    TellChange(GridChange::selection, Union(old, Selection()));
    if (leaves) {
        Tell([](GridListener& listener) { listener.EnterCell(); });
        Tell([](GridListener& listener) { listener.RowColChange(); });
    }
    Tell([](GridListener& listener) { listener.SelChange(); });
}

void Grid::SetRow(int row) {
    CheckRow(row);
    MoveCursor({row, col_, row, col_});
}

void Grid::SetCol(int col) {
    CheckCol(col);
    MoveCursor({row_, col, row_, col});
}

void Grid::SetRowSel(int row) {
    CheckRow(row);
    MoveCursor({row_, col_, row, colSel_});
}

void Grid::SetColSel(int col) {
    CheckCol(col);
    MoveCursor({row_, col_, rowSel_, col});
}

void Grid::Select(int row, int col, int rowSel, int colSel) {
    CheckRow(row);
    CheckCol(col);
    CheckRow(rowSel);
    CheckCol(colSel);
    MoveCursor({row, col, rowSel, colSel});
}

CellRange Grid::Selection() const {
    if (Rows() == 0 || Cols() == 0) {
        return {};
    }
    CellRange range{std::min(row_, rowSel_), std::min(col_, colSel_), std::max(row_, rowSel_), std::max(col_, colSel_)};
    if (selectionMode_ == GridSelectionMode::byRow) {
        range.left = std::min(range.left, fixedCols_);
        range.right = Cols() - 1;
    } else if (selectionMode_ == GridSelectionMode::byColumn) {
        range.top = std::min(range.top, fixedRows_);
        range.bottom = Rows() - 1;
    }
    return range;
}

void Grid::SetSelectionMode(GridSelectionMode mode) {
    if (mode != selectionMode_) {
        selectionMode_ = mode;
        LookChanged();
    }
}

void Grid::SetTopRow(int row) {
    if (row < fixedRows_ || row >= Rows()) {
        RefuseRow();
    }
    if (row != topRow_) {
        topRow_ = row;
        TellChange(GridChange::scroll, {0, 0, Rows() - 1, Cols() - 1});
    }
}

void Grid::SetLeftCol(int col) {
    if (col < fixedCols_ || col >= Cols()) {
        RefuseCol();
    }
    if (col != leftCol_) {
        leftCol_ = col;
        TellChange(GridChange::scroll, {0, 0, Rows() - 1, Cols() - 1});
    }
}

// ---- Rows ----------------------------------------------------------------------------------------------------------

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
    CheckCounts({Rows() + 1, Cols(), fixedRows_, fixedCols_});
    store_.InsertRow(at, item, Cols());
    RowsAdded(at);
}

// New rows never move the cursor, unless a fixed row has been waiting for them.
void Grid::RowsAdded(int at) {
    ++structureVersion_;
    LayoutChanged(at, 0);
    if (wantFixedRow_) {
        ChangeShape([&] { return CurrentShape(); }, [](const Shape&) {});
    }
}

int Grid::AddItems(TextView block, int index) {
    const int at = InsertionPoint(index);
    const std::int64_t byCells = Cols() == 0 ? maxRows : maxCells / Cols();
    const int room = static_cast<int>(std::min<std::int64_t>(maxRows, byCells)) - Rows();
    const int added = store_.InsertBlock(at, block, Cols(), room);
    if (added < 0) {
        RefuseCells();
    }
    RowsAdded(at);
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
        [&](const Shape&) { store_.RemoveRows(index, 1, [this](RowId id) { DropRowSettings(id); }); });
}

int Grid::RemoveMarked(std::vector<bool>& marked, int count) {
    if (count == 0) {
        return 0;
    }
    if (count == Rows() - fixedRows_) {
        marked[static_cast<std::size_t>(Rows()) - 1] = false;
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
    store_.ClearText();
    formats_.Clear();
    TellChange(GridChange::cells, {0, 0, Rows() - 1, Cols() - 1});
}

void Grid::SetRowPosition(int row, int position) {
    CheckRow(row);
    CheckRow(position);
    if (row != position) {
        store_.MoveRow(row, position);
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
    FormatTable moved = formats_;
    moved.MoveColumn(col, position);
    store_.MoveColumn(col, position);
    formats_ = std::move(moved);
    const auto from = columns_.begin() + col;
    const auto to = columns_.begin() + position;
    if (col < position) {
        std::rotate(from, from + 1, to + 1);
    } else {
        std::rotate(to, from, from + 1);
    }
    InvalidateColumnPositions();
    ++structureVersion_;
    LayoutChanged(0, std::min(col, position));
}

}  // namespace qvx::flexgrid
