// The flexible grid's model: texts, counts, sizes, formats, cursor and selection. It needs no window; a window and a
// control listen to it. Members have the names that hosts know, and setters are prefixed with `Set`.
//
// Rows and columns count from 0; the first FixedRows and FixedCols of them are headers. Sizes are in twips, positions
// in device pixels of the text metrics in use. A call that is refused throws RunTimeError and leaves the grid as it
// was, and so does a call that runs out of memory. Numbers of errors are given with the members.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <tuple>
#include <utility>
#include <vector>

#include "common/text.h"
#include "widgets/flexgrid/cell_format.h"
#include "widgets/flexgrid/cell_store.h"
#include "widgets/flexgrid/cell_texts.h"
#include "widgets/flexgrid/cell_view.h"
#include "widgets/flexgrid/column_table.h"
#include "widgets/flexgrid/enums.h"
#include "widgets/flexgrid/format_string.h"
#include "widgets/flexgrid/format_table.h"
#include "widgets/flexgrid/grid_listener.h"
#include "widgets/flexgrid/grid_look.h"
#include "widgets/flexgrid/listener_list.h"
#include "widgets/flexgrid/row_values.h"
#include "widgets/flexgrid/text_metrics.h"

namespace qvx::flexgrid {

class Grid final : public GridLook {
    struct Kept;  // used by AllOrNothing

  public:
    // Limits with which a grid of short texts easily fits a 64-bit process; a 32-bit process runs out of memory first,
    // which is an error as well. Every cell must have an index in TextArray, hence the limit on the product.
    static constexpr int maxRows = 16'777'216;
    static constexpr int maxCols = 16'384;
    static constexpr std::int64_t maxCells = INT32_MAX;
    static constexpr double maxFontPoints = 2160;

    Grid();
    Grid(const Grid&) = delete;
    Grid& operator=(const Grid&) = delete;

    // ---- Listeners -------------------------------------------------------------------------------------------------
    // Not owned; notified in the order in which they were added.
    void AddListener(GridListener* listener) { listeners_.Add(listener); }
    void RemoveListener(GridListener* listener) { listeners_.Remove(listener); }
    // Not owned; null for none.
    void SetRowWatch(RowWatch* watch) noexcept { store_.Observers().watch = watch; }
    void SetRowFollower(RowFollower* follower) noexcept { store_.Observers().follower = follower; }
    // Returns the identity of a row, which it keeps wherever it moves. Throws 30009.
    RowId IdOf(int row) const {
        CheckRow(row);
        return store_.IdAt(row);
    }
    // Returns the cells of a row by its identity, which must be one; valid until texts or rows change.
    RowView CellsOf(RowId id) const { return store_.ViewOf(id); }

    // ---- Counts ----------------------------------------------------------------------------------------------------
    // Reducing the number of rows or columns drops cells, the last first. FixedRows must be less than Rows and
    // FixedCols less than Cols, or both 0: 30001 otherwise. Rows may then be reduced to the fixed ones, which empties a
    // grid; the cursor returns to the first other row as soon as there is one. Below 0: 380. Beyond the limits above:
    // 30006.
    int Rows() const { return store_.RowCount(); }
    void SetRows(int count);
    int Cols() const { return columns_.Count(); }
    void SetCols(int count);
    // A fixed count of 1 that is set while there are no rows (columns) at all is remembered and takes effect with the
    // first row (the second column), unless another count is set before; until then the count stays 0.
    int FixedRows() const { return fixedRows_; }
    void SetFixedRows(int count);
    int FixedCols() const { return fixedCols_; }
    void SetFixedCols(int count);
    // The counts including those that are waiting, as a form saves them.
    int WantedFixedRows() const { return wantFixedRow_ ? 1 : fixedRows_; }
    int WantedFixedCols() const { return wantFixedCol_ ? 1 : fixedCols_; }
    // How many columns after the fixed ones do not scroll either; otherwise, they are like all others. Below 0: 380.
    // More than there are is no error: the last column always scrolls.
    int FrozenCols() const { return frozenCols_; }
    void SetFrozenCols(int count);
    // The columns that do not scroll: the fixed and the frozen ones.
    int StandingCols() const { return fixedCols_ + std::clamp(frozenCols_, 0, std::max(0, Cols() - 1 - fixedCols_)); }

    // ---- Cursor and selection --------------------------------------------------------------------------------------
    // A program may move the cursor anywhere, even to fixed cells. Setting Row or Col collapses the selection to the
    // cursor, scrolls nothing, and notifies the listeners with LeaveCell, EnterCell, RowColChange and SelChange, as
    // applicable. Out of range: 30009 and 30010. Without any cell, the cursor is 0, 0.
    int Row() const { return row_; }
    void SetRow(int row);
    int Col() const { return col_; }
    void SetCol(int col);
    // The far corner of the selection; moving it raises SelChange only.
    int RowSel() const { return rowSel_; }
    void SetRowSel(int row);
    int ColSel() const { return colSel_; }
    void SetColSel(int col);
    Cursor CurrentCursor() const { return {row_, col_, rowSel_, colSel_}; }
    // Moves the cursor and the far corner in one step, with one round of notifications.
    void Select(int row, int col, int rowSel, int colSel);
    void Select(const Cursor& to) { Select(to.row, to.col, to.rowSel, to.colSel); }
    void MoveTo(int row, int col) { Select(row, col, row, col); }
    // The selected cells, extended to whole rows or columns where SelectionMode requires it; empty without cells.
    CellRange Selection() const;
    GridSelectionMode SelectionMode() const { return selectionMode_; }
    void SetSelectionMode(GridSelectionMode mode);

    // ---- Text ------------------------------------------------------------------------------------------------------
    // The text of the cursor cell; writing it fills the selection when FillStyle is repeat.
    qvx::Text Text() const;
    void SetText(TextView text);
    // Throws 381 "Subscript out of range".
    qvx::Text TextMatrix(int row, int col) const;
    void SetTextMatrix(int row, int col, TextView text);
    // Writes adjacent cells of one row at once, from column `firstCol` on.
    void SetTexts(int row, int firstCol, std::span<const TextView> texts);
    // The same, for `count` texts that are the first cells of another row, which is not one of this grid's.
    void SetCells(int row, int firstCol, const RowView& cells, int count);
    // index = row * Cols + col.
    qvx::Text TextArray(int index) const;
    void SetTextArray(int index, TextView text);
    // The selection's texts, with a tab between columns and CR between rows. When Clip is written, the texts go into
    // the selection from its first cell on; surplus texts are dropped, and cells without a text stay. Writing a clip to
    // a selection of the size that it was read from copies it, including empty cells, so a CR at the end stands for one
    // more row with an empty cell. CR LF from other programs counts as one CR, and does not start another row at the
    // very end.
    qvx::Text Clip() const;
    void SetClip(TextView text);
    // The text without a copy; 381 outside. Valid until the grid is next changed.
    CellView Cell(int row, int col) const;

    // ---- Rows ------------------------------------------------------------------------------------------------------
    // Inserts a row of tab-separated cells from column 0 on and drops surplus ones; before row `index` (FixedRows to
    // Rows), or at the end without it. In the fixed rows: 30002; past the end or below -1: 30009.
    static constexpr int atEnd = -1;
    void AddItem(TextView item, int index = atEnd);
    // Inserts many rows at once, separated by CR, LF or both; a separator at the very end does not start another row.
    // Returns their number.
    int AddItems(TextView block, int index = atEnd);
    // Removes a row. A fixed row: 30011. The last row that is not fixed: 30015. Out of range: 30009.
    void RemoveItem(int index);
    // Removes every non-fixed row for which `predicate(row)` is true, in one linear pass; the numbers are those before
    // the pass. Returns how many were removed. When all rows match, the first is kept, as it would be by a loop of
    // RemoveItem from the end.
    template <class Predicate>
    int RemoveRowsIf(Predicate&& predicate);
    // Clears all texts and cell formats; counts, sizes and column settings stay.
    void Clear();
    // Moves a row or column, across the border of the fixed ones if need be, to `position`. Throws 30009 and 30010.
    void SetRowPosition(int row, int position);
    void SetColPosition(int col, int position);

    // Writes the cell of column `col` in each of the rows first to last (included) to textOf(const RowView& cells),
    // which must not change the grid and whose result must stay valid only until its next call. Listeners are notified
    // of one change. Throws 30009, 30010 when out of range; does nothing when last < first. When textOf throws or
    // memory runs out, the previous rows keep what was written.
    template <class TextOf>
    void SetColumn(int col, int first, int last, TextOf&& textOf);

    // ---- Walking many cells ----------------------------------------------------------------------------------------
    // Calls visit(int row, CellView cell) for rows first to last (included) of one column. The grid must not be changed
    // meanwhile. Throws 30009, 30010 when out of range; does nothing when last < first.
    template <class Visit>
    void ForEachCellInColumn(int col, int first, int last, Visit&& visit) const;
    // Calls visit(int row, const RowView& cells): cells[c] is a CellView, for every c below Cols.
    template <class Visit>
    void ForEachRow(int first, int last, Visit&& visit) const;

    // Calls that happen all or not at all: without Commit, everything is undone, which needs no memory. With
    // Reach::texts, these may be calls that write texts and move the cursor; with Reach::all, which takes time and
    // memory for each existing row, all calls except Clear and those that move or drop columns. Where a listener makes
    // other calls, what was done stays. One within another is part of it.
    class AllOrNothing {
      public:
        enum class Reach { texts, all };
        AllOrNothing(Grid& grid, Reach reach);
        ~AllOrNothing();
        AllOrNothing(const AllOrNothing&) = delete;
        AllOrNothing& operator=(const AllOrNothing&) = delete;
        void Commit() noexcept;

      private:
        Grid& grid_;
        Cursor cursor_;
        std::unique_ptr<Kept> kept_;             // only for Reach::all
        std::optional<CellStore::Batch> batch_;  // none for one within another, and after Commit
    };

    // ---- Format string, sizes, column and row settings -------------------------------------------------------------
    // See format_string.h.
    const qvx::Text& FormatString() const { return formatString_; }
    void SetFormatString(TextView format);
    // Returns the twips of a column that shows the whole text.
    int WidthFor(TextView text) const;

    static constexpr int all = -1;          // as an index: every row or column
    static constexpr int defaultSize = -1;  // as a size: back to the default
    // Twips; 0 means hidden. Index `all` also sets those of columns to be added. Below -1: 380. The getter returns the
    // width in effect.
    int ColWidth(int col) const;
    void SetColWidth(int col, int twips);
    // Gives a column without a width the one that it had before.
    void ShowCol(int col);
    // Returns the identity of a column, which it keeps wherever it moves, and the column that has it; -1 for none.
    std::uint32_t IdOfCol(int col);
    int ColWithId(std::uint32_t id) const;
    int RowHeight(int row) const;
    void SetRowHeight(int row, int twips);
    // Returns the pixels of a row of the default height, which follows from the font.
    int DefaultRowPixels() const { return PixelsDown(defaultRowHeight_); }
    // Rows shorter than this are shown at this height; hidden rows stay hidden.
    int RowHeightMin() const { return rowHeightMin_; }
    void SetRowHeightMin(int twips);
    GridAlignment ColAlignment(int col) const;
    void SetColAlignment(int col, GridAlignment alignment);
    // The alignment of a column's fixed cells; equal to ColAlignment until it is set.
    GridAlignment FixedAlignment(int col) const;
    void SetFixedAlignment(int col, GridAlignment alignment);
    std::int32_t ColData(int col) const;
    void SetColData(int col, std::int32_t data);
    std::int32_t RowData(int row) const;
    void SetRowData(int row, std::int32_t data);
    bool MergeCol(int col) const;
    void SetMergeCol(int col, bool merge);
    bool MergeRow(int row) const;
    void SetMergeRow(int row, bool merge);
    // All settings of a row apart from its texts, to be given to a row that replaces it.
    struct RowSettings {
        int height = defaultSize;  // twips, or defaultSize
        std::int32_t data = 0;
        bool merge = false;
        std::uint32_t filteredBy = 0;     // the number of the filter that has filtered the row out; 0 for none
        FormatTable::RowFormats formats;  // of its cells
        RowWatch::Keepsake kept;          // null without a watch
    };
    RowSettings SettingsOf(int row) const;
    void SetSettings(int row, const RowSettings& settings);

    // ---- Filter ----------------------------------------------------------------------------------------------------
    // A row that is filtered out has no pixels, but keeps its height for the time after. This belongs to the row
    // wherever it moves; new rows are shown. `filtered` has a mark for each row; fixed rows are never filtered out, and
    // where their number changes, all rows are shown. The cursor stays where it is.
    void SetFilteredRows(std::vector<bool> filtered);
    void SetRowFiltered(int row, bool filtered);
    void ShowAllRows() noexcept;
    bool RowFiltered(int row) const;
    bool IsFiltered(RowId id) const { return store_.IsFiltered(id); }
    int FilteredRows() const { return store_.FilteredCount(); }
    // Returns the nearest row from `row` on, in direction `step`, that is not filtered out; -1 for none.
    int UnfilteredRow(int row, int step) const;
    // Returns the cursor with both ends moved towards each other onto such rows, if there are any.
    Cursor OnUnfilteredRows(const Cursor& cursor) const;

    // ---- Geometry: all rows and columns laid end to end, unscrolled ------------------------------------------------
    std::int64_t RowTop(int row) const;  // pixels; row may be Rows, for the full height. O(log rows).
    std::int64_t ColLeft(int col) const;
    int RowPixels(int row) const;  // 0 means hidden
    int ColPixels(int col) const;
    // Returns the shown row or column that covers this position; -1 above the first, Rows or Cols after the last.
    int RowAt(std::int64_t y) const;
    int ColAt(std::int64_t x) const;

    // ---- Cell formats: the cursor cell, or the selection when FillStyle is repeat ----------------------------------
    GridAlignment CellAlignment() const;  // in effect: the cell's own, otherwise the column's
    void SetCellAlignment(GridAlignment alignment);
    OleColor CellBackColor() const;  // 0 when the cell has none of its own
    void SetCellBackColor(OleColor color);
    OleColor CellForeColor() const;
    void SetCellForeColor(OleColor color);
    // The getters return the font in effect.
    qvx::Text CellFontName() const;
    void SetCellFontName(TextView name);
    double CellFontSize() const;
    void SetCellFontSize(double points);
    double CellFontWidth() const;
    void SetCellFontWidth(double points);
    bool CellFontBold() const;
    void SetCellFontBold(bool value);
    bool CellFontItalic() const;
    void SetCellFontItalic(bool value);
    bool CellFontUnderline() const;
    void SetCellFontUnderline(bool value);
    bool CellFontStrikeThrough() const;
    void SetCellFontStrikeThrough(bool value);
    std::shared_ptr<const qvx::Picture> CellPicture() const;
    void SetCellPicture(std::shared_ptr<const qvx::Picture> picture);
    GridAlignment CellPictureAlignment() const;
    void SetCellPictureAlignment(GridAlignment alignment);
    GridTextStyle CellTextStyle() const;
    void SetCellTextStyle(GridTextStyle style);
    // Sets the colour and, if given, the weight of one cell in one step, regardless of the cursor and FillStyle. Throws
    // 381.
    void SetForeColorAndBoldOf(int row, int col, OleColor color, std::optional<bool> bold);

    // For painting: the format of a cell, or nullptr when the cell has none of its own; valid until formats are next
    // changed.
    const CellFormat* FormatOf(int row, int col) const;
    // The cell's font, valid until fonts or formats are next changed.
    const FontSpec& FontOf(int row, int col) const;
    // Returns 0 to 8: `general` is resolved by the cell's text, which the caller has at hand.
    GridAlignment AlignmentOf(int row, int col, qvx::TextView text) const;

    // ---- Merging and sorting ---------------------------------------------------------------------------------------
    // Sorts the selected rows, or all non-fixed ones when a single row is selected, by the columns Col to ColSel, the
    // leftmost first. The sort is stable. Fixed rows never move. See sort.h for the orders.
    void Sort(GridSort order);
    // Puts the rows from `first` on, which are not fixed, into another order: rows[i] is the number of the row that
    // becomes row first + i. The cursor stays on its record, whose row number changes, and a selection of several rows
    // collapses to the cursor's. The marks replace the earlier ones.
    void OrderRows(int first, std::span<const std::uint32_t> rows, std::span<const SortMark> marks);
    // The columns that the header shows as sorted, the most important first. They move with their columns.
    std::vector<SortMark> SortMarks() const;
    void SetSortMarks(std::span<const SortMark> marks) noexcept;
    void ClearSortMarks() noexcept { SetSortMarks({}); }
    // For painting: the place of a column among them, from 1, and 0 for none.
    int SortPlace(int col) const { return columns_[col].sortPlace; }
    bool SortDescending(int col) const { return columns_[col].sortDescending; }

    // ---- Scrolling -------------------------------------------------------------------------------------------------
    // The first row and column shown after the fixed ones. The window may limit them so that it stays filled. Not a
    // scrollable row or column: 30009, 30010.
    int TopRow() const { return topRow_; }
    void SetTopRow(int row);
    int LeftCol() const { return leftCol_; }
    void SetLeftCol(int col);

    // ---- Font and picture ------------------------------------------------------------------------------------------
    const FontSpec& Font() const { return font_; }
    void SetFont(const FontSpec& font);
    const std::shared_ptr<const qvx::Picture>& Picture() const { return picture_; }
    void SetPicture(std::shared_ptr<const qvx::Picture> picture);
    // Not owned; nullptr restores the fixed metrics. To be called again after the answers of `metrics` have changed
    // (another resolution).
    void SetTextMetrics(const TextMetrics* metrics);
    const TextMetrics& Metrics() const { return *metrics_; }
    // What cells show in place of their texts, which must outlive the grid or be replaced; null for nothing.
    void ShowTexts(const CellTexts* texts) {
        shownTexts_ = texts;
        LookChanged();
    }
    // Returns what a cell with this text shows, which may be in `scratch`.
    TextView ShownText(int row, int col, TextView text, qvx::Text& scratch) const {
        const bool own = !shownTexts_ || text.empty() || row < fixedRows_ || col < fixedCols_;
        return own ? text : shownTexts_->ShownText(col, text, scratch);
    }

    // Increases whenever rows or columns are inserted, removed or moved, and when all cells are cleared at once: while
    // it stays the same, row and column numbers keep their meaning.
    std::uint64_t StructureVersion() const { return structureVersion_; }

    // Bytes used for texts and row order, for measurements.
    std::size_t MemoryUsed() const { return store_.MemoryUsed(); }

  private:
    void LookChanged() override;
    void NotifyLeave();
    void NotifyChange(GridChange change, const CellRange& range);
    void LayoutChanged(int row, int col);

    // The counts as they are or are to become.
    struct Shape {
        int rows, cols, fixedRows, fixedCols;
    };

    // The fields that Reach::all restores besides the store and the cursor.
    auto KeptFields() {
        return std::tie(formats_, columns_, heights_, rowData_, mergeRows_, rowHeightMin_, fixedRows_, fixedCols_,
                        wantFixedRow_, wantFixedCol_, topRow_, leftCol_, formatString_, structureVersion_);
    }

    Shape CurrentShape() const { return {Rows(), Cols(), fixedRows_, fixedCols_}; }
    // Returns the cursor as near to its place as it can be in a grid of that shape.
    Cursor Fitted(Cursor cursor, const Shape& shape) const;
    Shape WithWantedFixed(Shape shape) const;
    void CheckRow(int row) const;
    void CheckCol(int col) const;
    void CheckCell(int row, int col) const;
    template <class Write>
    void WriteCells(int row, int firstCol, std::size_t count, Write write);
    static bool CellsFit(int rows, int cols) {
        return rows <= maxRows && cols <= maxCols && static_cast<std::int64_t>(rows) * cols <= maxCells;
    }
    static void CheckCounts(const Shape& shape);
    void MoveCursor(Cursor target);
    void PutCursorBack(const Cursor& to) noexcept;
    // Exists during a change that may put another cell under the cursor.
    class CellsMoving {
      public:
        explicit CellsMoving(Grid& grid);
        ~CellsMoving();
        CellsMoving(const CellsMoving&) = delete;
        CellsMoving& operator=(const CellsMoving&) = delete;

      private:
        Grid& grid_;
    };
    // Changes the grid to another shape, and moves the cursor as needed, with its notifications. `target` checks and
    // returns the shape; it is called again when a listener has changed the grid. `change` alters the store and may
    // throw.
    void ChangeShape(const std::function<Shape()>& target, const std::function<void(const Shape&)>& change);
    void StoreShape(const Shape& shape);
    int InsertionPoint(int index) const;
    void RowsAdded(int at, int count);
    void LeaveHeader(int rowsBefore);
    void RemoveStored(int at, int count);
    int RemoveMarked(std::vector<bool>& marked, int count);
    template <class Set>
    void ChangeColumns(int col, GridChange change, Set set);
    void ApplySegment(int col, const FormatSegment& segment);
    int AskOrder(int row1, int row2);
    GridAlignment DeclaredAlignment(int row, int col) const;  // may be `general`
    template <class Change>
    void ChangeFormat(Change change);
    template <class Change>
    void ChangeFormats(const CellRange& range, Change change);
    const CellFormat& CursorFormat() const;
    void DropRowSettings(RowId id) noexcept;
    int SharedRowPixels() const { return PixelsDown(EffectiveHeight(heights_.Shared())); }
    void FontOrMetricsChanged();
    // Sets a field on which the heights of rows depend, and measures them again; restores the field when that fails.
    template <class T>
    void ChangeHeights(T& field, T value);
    SparseMap<int> MeasureDeviations() const;
    int EffectiveHeight(int own) const;
    int PixelsDown(int twips) const { return ShownPixels(twips, metrics_->Resolution().y); }

    CellStore store_;
    FormatTable formats_;
    ColumnTable columns_{2};
    std::uint32_t lastColumnId_ = 0;

    RowValues<int> heights_{defaultSize};  // twips
    RowValues<std::int32_t> rowData_{0};
    RowValues<bool> mergeRows_{false};
    int rowHeightMin_ = 0;
    int defaultRowHeight_ = 240;

    // Invariants: fixedRows_ <= Rows, fixedCols_ < Cols or both 0; the cursor and the far corner are cells of
    // the grid, or 0 where there is none; topRow_ and leftCol_ are scrollable, or the fixed count where nothing is.
    int fixedRows_ = 1;
    int fixedCols_ = 1;
    int frozenCols_ = 0;
    bool wantFixedRow_ = false;  // only while fixedRows_ is 0
    bool wantFixedCol_ = false;  // only while fixedCols_ is 0
    int row_ = 1;
    int col_ = 1;
    int rowSel_ = 1;
    int colSel_ = 1;
    int topRow_ = 1;
    int leftCol_ = 1;
    GridSelectionMode selectionMode_ = GridSelectionMode::free;

    qvx::Text formatString_;
    FontSpec font_;
    std::shared_ptr<const qvx::Picture> picture_;
    const TextMetrics* metrics_;
    const CellTexts* shownTexts_ = nullptr;
    std::uint64_t structureVersion_ = 0;
    std::uint32_t filter_ = 1;  // the number of the current filter
    bool isWhole_ = false;      // an AllOrNothing is open
    ListenerList listeners_;
};

template <class Predicate>
int Grid::RemoveRowsIf(Predicate&& predicate) {
    // The predicate is called for all rows before the first is removed, so that it sees an unchanged grid and may
    // throw.
    std::vector<bool> marked(static_cast<std::size_t>(Rows()));
    int count = 0;
    for (int row = fixedRows_; row < Rows(); ++row) {
        if (predicate(row)) {
            marked[static_cast<std::size_t>(row)] = true;
            ++count;
        }
    }
    return RemoveMarked(marked, count);
}

template <class Visit>
void Grid::ForEachCellInColumn(int col, int first, int last, Visit&& visit) const {
    CheckCol(col);
    ForEachRow(first, last, [col, &visit](int row, const RowView& cells) { visit(row, cells[col]); });
}

template <class TextOf>
void Grid::SetColumn(int col, int first, int last, TextOf&& textOf) {
    CheckCol(col);
    if (last < first) {
        return;
    }
    CheckRow(first);
    CheckRow(last);
    try {
        store_.SetColumn(col, first, last, std::forward<TextOf>(textOf));
    } catch (...) {
        NotifyChange(GridChange::texts, {first, col, last, col});
        throw;
    }
    NotifyChange(GridChange::texts, {first, col, last, col});
}

template <class Visit>
void Grid::ForEachRow(int first, int last, Visit&& visit) const {
    if (last < first) {
        return;
    }
    CheckRow(first);
    CheckRow(last);
    store_.ForEachRow(first, last, std::forward<Visit>(visit));
}

}  // namespace qvx::flexgrid
