// Reading and writing texts, one by one and in the clipboard format.
#include <algorithm>

#include "widgets/flexgrid/grid.h"
#include "widgets/flexgrid/grid_errors.h"

namespace qvx::flexgrid {

CellView Grid::Cell(int row, int col) const {
    CheckCell(row, col);
    return store_.Cell(row, col);
}

qvx::Text Grid::TextMatrix(int row, int col) const { return Cell(row, col).ToText(); }

void Grid::SetTextMatrix(int row, int col, TextView text) {
    CheckCell(row, col);
    store_.SetCell(row, col, text);
    NotifyChange(GridChange::texts, {row, col, row, col});
}

void Grid::SetTexts(int row, int firstCol, std::span<const TextView> texts) {
    WriteCells(row, firstCol, texts.size(), [&] { store_.SetCells(row, firstCol, texts); });
}

void Grid::SetCells(int row, int firstCol, const RowView& cells, int count) {
    WriteCells(row, firstCol, static_cast<std::size_t>(count), [&] { store_.SetCells(row, firstCol, cells, count); });
}

template <class Write>
void Grid::WriteCells(int row, int firstCol, std::size_t count, Write write) {
    if (count == 0) {
        return;
    }
    CheckCell(row, firstCol);
    if (count > static_cast<std::size_t>(Cols() - firstCol)) {
        RefuseSubscript();
    }
    write();
    NotifyChange(GridChange::texts, {row, firstCol, row, firstCol + static_cast<int>(count) - 1});
}

qvx::Text Grid::TextArray(int index) const {
    if (index < 0 || Cols() == 0) {
        RefuseSubscript();
    }
    return TextMatrix(index / Cols(), index % Cols());
}

void Grid::SetTextArray(int index, TextView text) {
    if (index < 0 || Cols() == 0) {
        RefuseSubscript();
    }
    SetTextMatrix(index / Cols(), index % Cols(), text);
}

qvx::Text Grid::Text() const { return TextMatrix(row_, col_); }

void Grid::SetText(TextView text) {
    if (FillStyle() == GridFillStyle::single) {
        SetTextMatrix(row_, col_, text);
        return;
    }
    CheckCell(row_, col_);
    const CellRange range = Selection();
    store_.FillCells(range.top, range.bottom, range.left, range.right, text);
    NotifyChange(GridChange::texts, range);
}

qvx::Text Grid::Clip() const {
    qvx::Text clip;
    const CellRange range = Selection();
    for (int row = range.top; row <= range.bottom; ++row) {
        if (row > range.top) {
            clip += u'\r';
        }
        const RowView cells = store_.Row(row);
        for (int col = range.left; col <= range.right; ++col) {
            if (col > range.left) {
                clip += u'\t';
            }
            cells[col].AppendTo(clip);
        }
    }
    return clip;
}

void Grid::SetClip(TextView text) {
    const CellRange range = Selection();
    if (range.Empty()) {
        return;
    }
    if (text.ends_with(u"\r\n")) {
        text.remove_suffix(2);
    }
    CellStore::Batch batch(store_);
    std::vector<TextView> cells;
    for (int row = range.top; row <= range.bottom; ++row) {
        const std::size_t end = text.find(u'\r');
        TextView line = text.substr(0, end);
        cells.clear();
        for (int col = range.left; col <= range.right; ++col) {
            const std::size_t tab = line.find(u'\t');
            cells.push_back(line.substr(0, tab));
            if (tab == TextView::npos) {
                break;
            }
            line.remove_prefix(tab + 1);
        }
        store_.SetCells(row, range.left, cells);
        if (end == TextView::npos) {
            break;
        }
        text.remove_prefix(end + 1);
        if (text.starts_with(u'\n')) {
            text.remove_prefix(1);
        }
    }
    batch.Commit();
    NotifyChange(GridChange::texts, range);
}

}  // namespace qvx::flexgrid
