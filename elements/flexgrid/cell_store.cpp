#include "elements/flexgrid/cell_store.h"

#include <algorithm>

namespace qvx::flexgrid {

void CellStore::InsertEmptyRows(int at, int count) {
    std::vector<RowId> ids;
    for (int i = 0; i < count; ++i) {
        if (!free_.empty()) {
            ids.push_back(free_.back());
            free_.pop_back();
        } else {
            ids.push_back(static_cast<RowId>(rows_.size()));
            rows_.emplace_back();
        }
    }
    order_.insert(order_.begin() + at, ids.begin(), ids.end());
}

void CellStore::InsertRow(int at, TextView item, int cols) {
    InsertEmptyRows(at, 1);
    std::vector<TextView> cells;
    while (static_cast<int>(cells.size()) < cols) {
        const std::size_t tab = item.find(u'\t');
        cells.push_back(item.substr(0, tab));
        if (tab == TextView::npos) {
            break;
        }
        item.remove_prefix(tab + 1);
    }
    SetCells(at, 0, cells);
}

int CellStore::InsertBlock(int at, TextView block, int cols, int maxCount) {
    std::vector<TextView> items;
    while (!block.empty()) {
        const std::size_t end = block.find_first_of(u"\r\n");
        items.push_back(block.substr(0, end));
        if (end == TextView::npos) {
            break;
        }
        block.remove_prefix(block.substr(end, 2) == u"\r\n" ? end + 2 : end + 1);
    }
    if (items.size() > static_cast<std::size_t>(maxCount)) {
        return -1;
    }
    for (std::size_t i = 0; i < items.size(); ++i) {
        InsertRow(at + static_cast<int>(i), items[i], cols);
    }
    return static_cast<int>(items.size());
}

void CellStore::SetCells(int row, int firstCol, std::span<const TextView> texts) {
    std::vector<Text>& cells = rows_[IdAt(row)];
    const auto first = static_cast<std::size_t>(firstCol);
    cells.resize(std::max(cells.size(), first + texts.size()));
    for (std::size_t i = 0; i < texts.size(); ++i) {
        cells[first + i] = texts[i];
    }
}

void CellStore::FillCells(int firstRow, int lastRow, int firstCol, int lastCol, TextView text) {
    const std::vector<TextView> texts(static_cast<std::size_t>(lastCol - firstCol + 1), text);
    for (int row = firstRow; row <= lastRow; ++row) {
        SetCells(row, firstCol, texts);
    }
}

void CellStore::TruncateColumns(int cols) noexcept {
    for (std::vector<Text>& cells : rows_) {
        if (cells.size() > static_cast<std::size_t>(cols)) {
            cells.erase(cells.begin() + cols, cells.end());
        }
    }
}

void CellStore::MoveColumn(int from, int to) {
    for (std::vector<Text>& cells : rows_) {
        cells.resize(std::max<std::size_t>(cells.size(), static_cast<std::size_t>(std::max(from, to)) + 1));
        Text moved = std::move(cells[static_cast<std::size_t>(from)]);
        cells.erase(cells.begin() + from);
        cells.insert(cells.begin() + to, std::move(moved));
    }
}

void CellStore::MoveRow(int from, int to) {
    const RowId id = IdAt(from);
    order_.erase(order_.begin() + from);
    order_.insert(order_.begin() + to, id);
}

void CellStore::ClearText() noexcept {
    for (std::vector<Text>& cells : rows_) {
        cells.clear();
    }
}

void CellStore::Reorder(int first, std::span<const RowId> ids) noexcept {
    std::copy(ids.begin(), ids.end(), order_.begin() + first);
}

void CellStore::Erase(int at, int count) {
    for (int i = 0; i < count; ++i) {
        rows_[IdAt(at + i)].clear();
        deviations_.Erase(IdAt(at + i));
        free_.push_back(IdAt(at + i));
    }
    order_.erase(order_.begin() + at, order_.begin() + at + count);
}

void CellStore::SetDeviation(int row, int pixels) {
    if (pixels == 0) {
        deviations_.Erase(IdAt(row));
    } else {
        deviations_.Set(IdAt(row), pixels);
    }
}

void CellStore::SetDeviations(SparseMap<int> byId) { deviations_ = std::move(byId); }

std::int64_t CellStore::ExtentBefore(int row, int sharedPixels) const {
    std::int64_t extent = static_cast<std::int64_t>(row) * sharedPixels;
    for (int r = 0; r < row && !deviations_.Empty(); ++r) {
        const int* deviation = deviations_.Find(IdAt(r));
        extent += deviation ? *deviation : 0;
    }
    return extent;
}

int CellStore::RowAtExtent(std::int64_t y, int sharedPixels) const {
    std::int64_t bottom = 0;
    for (int row = 0; row < RowCount(); ++row) {
        const int* deviation = deviations_.Find(IdAt(row));
        bottom += sharedPixels + (deviation ? *deviation : 0);
        if (y < bottom) {
            return row;
        }
    }
    return RowCount();
}

std::size_t CellStore::MemoryUsed() const {
    std::size_t bytes = order_.capacity() * sizeof(RowId);
    for (const std::vector<Text>& cells : rows_) {
        bytes += cells.capacity() * sizeof(Text);
    }
    return bytes;
}

}  // namespace qvx::flexgrid
