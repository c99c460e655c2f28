#include "widgets/flexgrid/grid.h"

#include <algorithm>
#include <cassert>

#include "widgets/flexgrid/grid_errors.h"

namespace qvx::flexgrid {

Grid::Grid() : metrics_(&FixedTextMetrics::Default()) { store_.InsertEmptyRows(0, 2); }

// ---- Listeners -----------------------------------------------------------------------------------------------------

// A listener may fail for lack of memory; the cursor then stays, although some listeners have been notified.
void Grid::NotifyLeave() {
    try {
        listeners_.Notify([](GridListener& listener) { listener.LeaveCell(); });
    } catch (...) {
        listeners_.NotifyAfterwards([](GridListener& listener) { listener.EnterCell(); });
        throw;
    }
}

void Grid::NotifyChange(GridChange change, const CellRange& range) {
    listeners_.NotifyAfterwards([&](GridListener& listener) { listener.Invalidated(change, range); });
}

Grid::CellsMoving::CellsMoving(Grid& grid) : grid_(grid) {
    grid_.listeners_.Notify([](GridListener& listener) { listener.CellsMove(); });
}

Grid::CellsMoving::~CellsMoving() {
    grid_.listeners_.Notify([](GridListener& listener) { listener.CellsMoved(); });
}

int Grid::AskOrder(int row1, int row2) {
    int result = 0;
    bool answered = false;
    listeners_.Notify([&](GridListener& listener) { answered = answered || listener.Compare(row1, row2, result); });
    return result;
}

void Grid::LookChanged() { NotifyChange(GridChange::look, {0, 0, Rows() - 1, Cols() - 1}); }

void Grid::LayoutChanged(int row, int col) { NotifyChange(GridChange::layout, {row, col, Rows() - 1, Cols() - 1}); }

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
    if (shape.fixedRows > shape.rows) {
        RefuseFixedRows();
    }
    if (shape.fixedCols > 0 && shape.fixedCols >= shape.cols) {
        RefuseFixedCols();
    }
    if (!CellsFit(shape.rows, shape.cols)) {
        RefuseCells();
    }
}

Grid::Shape Grid::WithWantedFixed(Shape shape) const {
    if (wantFixedRow_ && shape.rows >= 1) {
        shape.fixedRows = 1;
    }
    if (wantFixedCol_ && shape.cols >= 2) {
        shape.fixedCols = 1;
    }
    return shape;
}

Cursor Grid::Fitted(Cursor cursor, const Shape& shape) const {
    // Only a fixed count that increases moves the cursor out of the fixed cells: a program may have put it on a header
    // on purpose.
    const int minRow = shape.fixedRows > fixedRows_ ? shape.fixedRows : 0;
    const int minCol = shape.fixedCols > fixedCols_ ? shape.fixedCols : 0;
    const auto fit = [](int value, int low, int count) {
        return count == 0 ? 0 : std::clamp(value, std::min(low, count - 1), count - 1);
    };
    return {fit(cursor.row, minRow, shape.rows), fit(cursor.col, minCol, shape.cols),
            fit(cursor.rowSel, minRow, shape.rows), fit(cursor.colSel, minCol, shape.cols)};
}

void Grid::StoreShape(const Shape& shape) {
    wantFixedRow_ = wantFixedRow_ && shape.fixedRows == 0;
    wantFixedCol_ = wantFixedCol_ && shape.fixedCols == 0;
    if (fixedRows_ != shape.fixedRows) {
        ShowAllRows();
    }
    fixedRows_ = shape.fixedRows;
    fixedCols_ = shape.fixedCols;
    topRow_ = std::clamp(topRow_, fixedRows_, std::max(fixedRows_, Rows() - 1));
    leftCol_ = std::clamp(leftCol_, StandingCols(), std::max(fixedCols_, Cols() - 1));
    ++structureVersion_;
    assert(fixedRows_ <= Rows());
    assert(fixedCols_ == 0 || fixedCols_ < Cols());
    assert(topRow_ >= fixedRows_ && leftCol_ >= StandingCols());
}

void Grid::ChangeShape(const std::function<Shape()>& target, const std::function<void(const Shape&)>& change) {
    Shape shape = WithWantedFixed(target());
    CheckCounts(shape);
    const Cursor before = CurrentCursor();
    Cursor after = Fitted(before, shape);
    const bool leaves = after.row != before.row || after.col != before.col;
    if (leaves) {
        NotifyLeave();
    }
    const CellsMoving moving(*this);
    try {
        if (leaves) {
            shape = WithWantedFixed(target());
            CheckCounts(shape);
            after = Fitted(CurrentCursor(), shape);
        }
        change(shape);
    } catch (...) {
        if (leaves) {
            listeners_.NotifyAfterwards([](GridListener& listener) { listener.EnterCell(); });
        }
        throw;
    }
    StoreShape(shape);
    std::tie(row_, col_, rowSel_, colSel_) = std::tie(after.row, after.col, after.rowSel, after.colSel);
    LayoutChanged(0, 0);
    if (leaves) {
        listeners_.NotifyAfterwards([](GridListener& listener) { listener.EnterCell(); });
        listeners_.NotifyAfterwards([](GridListener& listener) { listener.RowColChange(); });
    }
    if (before != after) {
        listeners_.NotifyAfterwards([](GridListener& listener) { listener.SelChange(); });
    }
}

void Grid::SetRows(int count) {
    if (count == Rows()) {
        return;
    }
    const int before = Rows();
    ChangeShape(
        [&] {
            return Shape{count, Cols(), fixedRows_, fixedCols_};
        },
        [&](const Shape& shape) {
            if (shape.rows > Rows()) {
                store_.InsertEmptyRows(Rows(), shape.rows - Rows());
            } else {
                RemoveStored(shape.rows, Rows() - shape.rows);
            }
        });
    LeaveHeader(before);
}

// Without any other row, the cursor had to be on a header; it must not stay there, where nothing can be entered.
void Grid::LeaveHeader(int rowsBefore) {
    if (fixedRows_ > 0 && rowsBefore == fixedRows_ && Rows() > fixedRows_ && row_ < fixedRows_) {
        MoveCursor({fixedRows_, col_, fixedRows_, col_});  // there may be no column to move to
    }
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
            columns_.Resize(shape.cols);
        });
}

void Grid::SetFixedRows(int count) {
    if (Rows() == 0 && (count == 0 || count == 1)) {
        wantFixedRow_ = count == 1;
        return;
    }
    // A refused count does not affect one that is waiting.
    CheckCounts({Rows(), Cols(), count, fixedCols_});
    if (count > 0 && count == Rows() && count != fixedRows_) {
        RefuseFixedRows();
    }
    ChangeShape([&] { return wantFixedRow_ = false, Shape{Rows(), Cols(), count, fixedCols_}; }, [](const Shape&) {});
}

void Grid::SetFixedCols(int count) {
    if (Cols() == 0 && (count == 0 || count == 1)) {
        wantFixedCol_ = count == 1;
        return;
    }
    CheckCounts({Rows(), Cols(), fixedRows_, count});
    ChangeShape([&] { return wantFixedCol_ = false, Shape{Rows(), Cols(), fixedRows_, count}; }, [](const Shape&) {});
}

void Grid::SetFrozenCols(int count) {
    if (count < 0) {
        RefuseValue();
    }
    if (count == frozenCols_) {
        return;
    }
    // A view that shows the first columns that scroll goes on showing them.
    const bool atStart = leftCol_ == StandingCols();
    frozenCols_ = count;
    leftCol_ = atStart ? StandingCols() : std::max(leftCol_, StandingCols());
    LayoutChanged(0, 0);
}

// ---- Cursor and selection ------------------------------------------------------------------------------------------

void Grid::MoveCursor(Cursor target) {
    const Cursor before = CurrentCursor();
    if (target == before) {
        return;
    }
    const bool leaves = target.row != before.row || target.col != before.col;
    if (leaves) {
        NotifyLeave();
        target = Fitted(target, CurrentShape());  // a listener may have made the grid smaller
    }
    const CellRange old = Selection();
    std::tie(row_, col_, rowSel_, colSel_) = std::tie(target.row, target.col, target.rowSel, target.colSel);
    NotifyChange(GridChange::selection, old.Union(Selection()));
    if (leaves) {
        listeners_.NotifyAfterwards([](GridListener& listener) { listener.EnterCell(); });
        listeners_.NotifyAfterwards([](GridListener& listener) { listener.RowColChange(); });
    }
    listeners_.NotifyAfterwards([](GridListener& listener) { listener.SelChange(); });
}

// Restores the cursor's position after the cells have been restored.
void Grid::PutCursorBack(const Cursor& to) noexcept {
    const Cursor left = CurrentCursor();
    std::tie(row_, col_, rowSel_, colSel_) = std::tie(to.row, to.col, to.rowSel, to.colSel);
    LayoutChanged(0, 0);
    if (left != to) {
        listeners_.NotifyAfterwards([](GridListener& listener) { listener.RowColChange(); });
        listeners_.NotifyAfterwards([](GridListener& listener) { listener.SelChange(); });
    }
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
        NotifyChange(GridChange::scroll, {0, 0, Rows() - 1, Cols() - 1});
    }
}

void Grid::SetLeftCol(int col) {
    if (col < StandingCols() || col >= Cols()) {
        RefuseCol();
    }
    if (col != leftCol_) {
        leftCol_ = col;
        NotifyChange(GridChange::scroll, {0, 0, Rows() - 1, Cols() - 1});
    }
}

}  // namespace qvx::flexgrid
