// Sizes, settings and formats of columns, rows and cells, and the positions that follow from them.
#include <algorithm>
#include <utility>

#include "common/numeric_reading.h"
#include "widgets/flexgrid/grid.h"
#include "widgets/flexgrid/grid_errors.h"

namespace qvx::flexgrid {

namespace {

void CheckSize(int twips) {
    if (twips < Grid::defaultSize) {
        RefuseValue();
    }
}

}  // namespace

// ---- Columns -------------------------------------------------------------------------------------------------------

int Grid::ColWidth(int col) const {
    CheckCol(col);
    return columns_[col].Width();
}

template <class Set>
void Grid::ChangeColumns(int col, GridChange change, Set set) {
    if (col == all) {
        columns_.ChangeAll(set);
        col = 0;
    } else {
        CheckCol(col);
        columns_.Change(col, set);
    }
    NotifyChange(change, {0, col, Rows() - 1, Cols() - 1});
}

void Grid::SetColWidth(int col, int twips) {
    CheckSize(twips);
    ChangeColumns(col, GridChange::layout, [&](ColumnSettings& column) {
        if (twips == 0 && column.width != 0) {
            column.shownWidth = column.width;
        }
        column.width = twips;
    });
}

void Grid::ShowCol(int col) {
    if (ColWidth(col) == 0) {
        SetColWidth(col, columns_[col].shownWidth);
    }
}

std::uint32_t Grid::IdOfCol(int col) {
    CheckCol(col);
    if (columns_[col].id == 0) {
        ++lastColumnId_;
        columns_.Change(col, [&](ColumnSettings& column) { column.id = lastColumnId_; });
    }
    return columns_[col].id;
}

int Grid::ColWithId(std::uint32_t id) const {
    for (int col = 0; col < Cols(); ++col) {
        if (columns_[col].id == id) {
            return col;
        }
    }
    return -1;
}

GridAlignment Grid::ColAlignment(int col) const {
    CheckCol(col);
    return columns_[col].alignment;
}

void Grid::SetColAlignment(int col, GridAlignment alignment) {
    ChangeColumns(col, GridChange::formats, [&](ColumnSettings& column) { column.alignment = alignment; });
}

GridAlignment Grid::FixedAlignment(int col) const {
    CheckCol(col);
    const ColumnSettings& column = columns_[col];
    return column.hasFixedAlignment ? column.fixedAlignment : column.alignment;
}

void Grid::SetFixedAlignment(int col, GridAlignment alignment) {
    ChangeColumns(col, GridChange::formats, [&](ColumnSettings& column) {
        column.fixedAlignment = alignment;
        column.hasFixedAlignment = true;
    });
}

std::int32_t Grid::ColData(int col) const {
    CheckCol(col);
    return columns_[col].data;
}

void Grid::SetColData(int col, std::int32_t data) {
    const auto set = [&](ColumnSettings& column) { column.data = data; };
    // Of the columns that there are: those to come have 0.
    if (col == all) {
        columns_.ChangeEach(set);
        return;
    }
    CheckCol(col);
    columns_.Change(col, set);
}

bool Grid::MergeCol(int col) const {
    CheckCol(col);
    return columns_[col].merge;
}

void Grid::SetMergeCol(int col, bool merge) {
    ChangeColumns(col, GridChange::formats, [&](ColumnSettings& column) { column.merge = merge; });
}

// ---- Rows ----------------------------------------------------------------------------------------------------------

int Grid::EffectiveHeight(int own) const {
    if (own == 0) {
        return 0;
    }
    return std::max(own == defaultSize ? defaultRowHeight_ : own, rowHeightMin_);
}

int Grid::RowHeight(int row) const {
    CheckRow(row);
    return EffectiveHeight(heights_.Of(store_.IdAt(row)));
}

void Grid::SetRowHeight(int row, int twips) {
    CheckSize(twips);
    if (row == all) {
        heights_.SetAll(twips);
        store_.SetDeviations({}, SharedRowPixels());
        LayoutChanged(0, 0);
        return;
    }
    CheckRow(row);
    const RowId id = store_.IdAt(row);
    if (twips != heights_.Shared()) {
        heights_.Reserve(1);
    }
    store_.SetDeviation(row, PixelsDown(EffectiveHeight(twips)) - SharedRowPixels());
    heights_.Set(id, twips);
    LayoutChanged(row, 0);
}

template <class T>
void Grid::ChangeHeights(T& field, T value) {
    const int heightBefore = defaultRowHeight_;
    std::swap(field, value);
    try {
        const int dpi = metrics_->Resolution().y;
        const int pixels = metrics_->LineHeight(font_) + Scaled(cellSpaceDown, dpi);
        defaultRowHeight_ = PixelsToTwips(pixels, dpi);
        store_.SetDeviations(MeasureDeviations(), SharedRowPixels());
    } catch (...) {
        std::swap(field, value);
        defaultRowHeight_ = heightBefore;
        throw;
    }
}

SparseMap<int> Grid::MeasureDeviations() const {
    SparseMap<int> deviations;
    const int shared = SharedRowPixels();
    deviations.Reserve(heights_.OwnCount());
    heights_.ForEachOwn([&](RowId id, int own) {
        if (const int deviation = PixelsDown(EffectiveHeight(own)) - shared; deviation != 0) {
            deviations.Set(id, deviation);
        }
    });
    return deviations;
}

void Grid::SetRowHeightMin(int twips) {
    if (twips < 0) {
        RefuseValue();
    }
    if (twips != rowHeightMin_) {
        ChangeHeights(rowHeightMin_, twips);
        LayoutChanged(0, 0);
    }
}

std::int32_t Grid::RowData(int row) const {
    CheckRow(row);
    return rowData_.Of(store_.IdAt(row));
}

void Grid::SetRowData(int row, std::int32_t data) {
    if (row != all) {
        CheckRow(row);
        rowData_.Set(store_.IdAt(row), data);
        return;
    }
    // Of the rows that there are: those to come have 0.
    if (data == 0) {
        rowData_.SetAll(0);
        return;
    }
    rowData_.Reserve(static_cast<std::size_t>(Rows()));
    for (int r = 0; r < Rows(); ++r) {
        rowData_.Set(store_.IdAt(r), data);
    }
}

bool Grid::MergeRow(int row) const {
    CheckRow(row);
    return mergeRows_.Of(store_.IdAt(row));
}

void Grid::SetMergeRow(int row, bool merge) {
    if (row == all) {
        mergeRows_.SetAll(merge);
        NotifyChange(GridChange::formats, {0, 0, Rows() - 1, Cols() - 1});
        return;
    }
    CheckRow(row);
    mergeRows_.Set(store_.IdAt(row), merge);
    NotifyChange(GridChange::formats, {row, 0, row, Cols() - 1});
}

// ---- Geometry ------------------------------------------------------------------------------------------------------

std::int64_t Grid::RowTop(int row) const {
    if (row != Rows()) {
        CheckRow(row);
    }
    return store_.ExtentBefore(row, SharedRowPixels());
}

int Grid::RowPixels(int row) const { return RowFiltered(row) ? 0 : PixelsDown(RowHeight(row)); }

int Grid::RowAt(std::int64_t y) const { return y < 0 ? -1 : store_.RowAtExtent(y, SharedRowPixels()); }

std::int64_t Grid::ColLeft(int col) const {
    if (col != Cols()) {
        CheckCol(col);
    }
    return columns_.LeftOf(col, metrics_->Resolution().x);
}

int Grid::ColPixels(int col) const { return ShownPixels(ColWidth(col), metrics_->Resolution().x); }

int Grid::ColAt(std::int64_t x) const { return x < 0 ? -1 : columns_.At(x, metrics_->Resolution().x); }

// ---- Font ----------------------------------------------------------------------------------------------------------

void Grid::FontOrMetricsChanged() {
    formats_.FontsChanged();
    LookChanged();
    LayoutChanged(0, 0);
}

void Grid::SetFont(const FontSpec& font) {
    if (!(font == font_)) {
        ChangeHeights(font_, font);
        FontOrMetricsChanged();
    }
}

void Grid::SetTextMetrics(const TextMetrics* metrics) {
    ChangeHeights(metrics_, metrics ? metrics : &FixedTextMetrics::Default());
    FontOrMetricsChanged();
}

void Grid::SetPicture(std::shared_ptr<const qvx::Picture> picture) {
    picture_ = std::move(picture);
    LookChanged();
}

// ---- Cell formats --------------------------------------------------------------------------------------------------

const CellFormat* Grid::FormatOf(int row, int col) const {
    return formats_.Empty() ? nullptr : formats_.Find(store_.IdAt(row), col);
}

const FontSpec& Grid::FontOf(int row, int col) const {
    return formats_.Empty() ? font_ : formats_.FontOf(store_.IdAt(row), col, font_);
}

GridAlignment Grid::DeclaredAlignment(int row, int col) const {
    if (const CellFormat* format = FormatOf(row, col); format && format->alignment) {
        return *format->alignment;
    }
    return row < fixedRows_ || col < fixedCols_ ? FixedAlignment(col) : ColAlignment(col);
}

GridAlignment Grid::AlignmentOf(int row, int col, qvx::TextView text) const {
    const GridAlignment declared = DeclaredAlignment(row, col);
    if (declared != GridAlignment::general) {
        return declared;
    }
    return IsNumeric(text) ? GridAlignment::rightCenter : GridAlignment::leftCenter;
}

const CellFormat& Grid::CursorFormat() const {
    static const CellFormat plain;
    CheckCell(row_, col_);
    const CellFormat* format = FormatOf(row_, col_);
    return format ? *format : plain;
}

template <class Change>
void Grid::ChangeFormat(Change change) {
    CheckCell(row_, col_);
    ChangeFormats(FillStyle() == GridFillStyle::repeat ? Selection() : CellRange{row_, col_, row_, col_}, change);
}

template <class Change>
void Grid::ChangeFormats(const CellRange& range, Change change) {
    std::vector<RowId> rows;
    rows.reserve(static_cast<std::size_t>(range.bottom - range.top) + 1);
    for (int row = range.top; row <= range.bottom; ++row) {
        rows.push_back(store_.IdAt(row));
    }
    formats_.ChangeCells(rows, range.left, range.right, change);
    NotifyChange(GridChange::formats, range);
}

GridAlignment Grid::CellAlignment() const {
    CheckCell(row_, col_);
    return DeclaredAlignment(row_, col_);
}
OleColor Grid::CellBackColor() const { return CursorFormat().backColor; }
OleColor Grid::CellForeColor() const { return CursorFormat().foreColor; }
qvx::Text Grid::CellFontName() const { return CursorFormat().fontName.value_or(font_.face); }
double Grid::CellFontSize() const { return CursorFormat().fontSize.value_or(font_.points); }
double Grid::CellFontWidth() const { return CursorFormat().fontWidth.value_or(font_.widthPoints); }
bool Grid::CellFontBold() const { return CursorFormat().fontBold.value_or(font_.weight >= 600); }
bool Grid::CellFontItalic() const { return CursorFormat().fontItalic.value_or(font_.italic); }
bool Grid::CellFontUnderline() const { return CursorFormat().fontUnderline.value_or(font_.underline); }
bool Grid::CellFontStrikeThrough() const { return CursorFormat().fontStrikeThrough.value_or(font_.strikeThrough); }
std::shared_ptr<const qvx::Picture> Grid::CellPicture() const { return CursorFormat().picture; }
GridAlignment Grid::CellPictureAlignment() const { return CursorFormat().pictureAlignment; }
GridTextStyle Grid::CellTextStyle() const {
    const bool fixed = row_ < fixedRows_ || col_ < fixedCols_;
    return CursorFormat().textStyle.value_or(fixed ? TextStyleFixed() : TextStyle());
}

void Grid::SetCellAlignment(GridAlignment alignment) {
    ChangeFormat([&](CellFormat& format) { format.alignment = alignment; });
}
void Grid::SetCellBackColor(OleColor color) {
    ChangeFormat([&](CellFormat& format) { format.backColor = color; });
}
void Grid::SetCellForeColor(OleColor color) {
    ChangeFormat([&](CellFormat& format) { format.foreColor = color; });
}
void Grid::SetCellFontName(TextView name) {
    ChangeFormat([&](CellFormat& format) { format.fontName = name; });
}
void Grid::SetCellFontSize(double points) {
    // The range of valid font sizes; written so that a not-a-number is refused as well.
    if (!(points > 0 && points <= maxFontPoints)) {
        RefuseValue();
    }
    ChangeFormat([&](CellFormat& format) { format.fontSize = points; });
}
void Grid::SetCellFontWidth(double points) {
    if (!(points >= 0 && points <= maxFontPoints)) {
        RefuseValue();
    }
    ChangeFormat([&](CellFormat& format) { format.fontWidth = points; });
}
void Grid::SetCellFontBold(bool value) {
    ChangeFormat([&](CellFormat& format) { format.fontBold = value; });
}
void Grid::SetCellFontItalic(bool value) {
    ChangeFormat([&](CellFormat& format) { format.fontItalic = value; });
}
void Grid::SetCellFontUnderline(bool value) {
    ChangeFormat([&](CellFormat& format) { format.fontUnderline = value; });
}
void Grid::SetCellFontStrikeThrough(bool value) {
    ChangeFormat([&](CellFormat& format) { format.fontStrikeThrough = value; });
}
void Grid::SetCellPicture(std::shared_ptr<const qvx::Picture> picture) {
    ChangeFormat([&](CellFormat& format) { format.picture = picture; });
}
void Grid::SetCellPictureAlignment(GridAlignment alignment) {
    ChangeFormat([&](CellFormat& format) { format.pictureAlignment = alignment; });
}
void Grid::SetCellTextStyle(GridTextStyle style) {
    ChangeFormat([&](CellFormat& format) { format.textStyle = style; });
}

void Grid::SetForeColorAndBoldOf(int row, int col, OleColor color, std::optional<bool> bold) {
    CheckCell(row, col);
    ChangeFormats({row, col, row, col}, [&](CellFormat& format) {
        format.foreColor = color;
        format.fontBold = bold ? bold : format.fontBold;
    });
}

}  // namespace qvx::flexgrid
