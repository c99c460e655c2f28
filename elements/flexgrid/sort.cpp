#include "elements/flexgrid/sort.h"

#include <algorithm>
#include <numeric>

#include "common/numeric_reading.h"
#include "common/text_compare.h"
#include "elements/flexgrid/grid.h"
#include "elements/flexgrid/grid_errors.h"

namespace qvx::flexgrid {

namespace {

// What a cell sorts by, read once. Texts lie in one pool.
struct Key {
    bool isText = false;
    double number = 0;
    std::uint64_t prefix = 0;  // the first four units, the first in the highest place: settles most comparisons
    std::size_t start = 0;
    std::size_t size = 0;
};

class Keys {
  public:
    Keys(GridSort order, int columns) : order_(order), columns_(static_cast<std::size_t>(columns)) {}

    void Reserve(std::size_t rows) { keys_.reserve(rows * columns_); }
    void Add(const CellView& cell);
    // Below, at or above 0; rows count from 0 in the order they were added.
    int Compare(std::uint32_t a, std::uint32_t b) const;

  private:
    Key TextKey(TextView text);
    int CompareKeys(const Key& a, const Key& b) const;

    GridSort order_;
    std::size_t columns_;
    std::vector<Key> keys_;
    Text pool_;
    Text scratch_;
};

Key Keys::TextKey(TextView text) {
    Key key;
    key.isText = true;
    key.start = pool_.size();
    key.size = text.size();
    for (std::size_t i = 0; i < 4; ++i) {
        key.prefix = key.prefix << 16 | (i < text.size() ? text[i] : 0);
    }
    pool_.append(text);
    return key;
}

void Keys::Add(const CellView& cell) {
    Key key;
    switch (order_) {
        case GridSort::numericAscending:
        case GridSort::numericDescending:
            key.number = cell.IsLatin1() ? NumericValue(cell.Latin1()) : NumericValue(cell.Wide());
            break;
        case GridSort::stringAscending:
        case GridSort::stringDescending:
            key = TextKey(cell.AsWide(scratch_));
            break;
        case GridSort::genericAscending:
        case GridSort::genericDescending: {
            const TextView text = cell.AsWide(scratch_);
            if (const auto number = ReadNumeric(text)) {
                key.number = *number;
            } else {
                key = TextKey(FoldedText(text));
            }
            break;
        }
        default:
            key = TextKey(FoldedText(cell.AsWide(scratch_)));
            break;
    }
    keys_.push_back(key);
}

int Keys::CompareKeys(const Key& a, const Key& b) const {
    if (a.isText != b.isText) {
        return a.isText ? 1 : -1;
    }
    if (!a.isText) {
        return a.number < b.number ? -1 : a.number > b.number ? 1 : 0;
    }
    if (a.prefix != b.prefix) {
        return a.prefix < b.prefix ? -1 : 1;
    }
    const TextView pool(pool_);
    return pool.substr(a.start, a.size).compare(pool.substr(b.start, b.size));
}

int Keys::Compare(std::uint32_t a, std::uint32_t b) const {
    for (std::size_t i = 0; i < columns_; ++i) {
        if (const int result = CompareKeys(keys_[a * columns_ + i], keys_[b * columns_ + i]); result != 0) {
            return result;
        }
    }
    return 0;
}

bool IsDescending(GridSort order) { return static_cast<int>(order) % 2 == 0; }

std::vector<std::uint32_t> Numbers(int first, int last) {
    std::vector<std::uint32_t> rows(static_cast<std::size_t>(last - first + 1));
    std::iota(rows.begin(), rows.end(), static_cast<std::uint32_t>(first));
    return rows;
}

}  // namespace

std::vector<std::uint32_t> SortedRows(const Grid& grid, GridSort order, int firstRow, int lastRow, int firstCol,
                                      int lastCol) {
    Keys keys(order, lastCol - firstCol + 1);
    keys.Reserve(static_cast<std::size_t>(lastRow - firstRow + 1));
    grid.ForEachRow(firstRow, lastRow, [&](int, const RowView& cells) {
        for (int col = firstCol; col <= lastCol; ++col) {
            keys.Add(cells[col]);
        }
    });
    std::vector<std::uint32_t> rows = Numbers(firstRow, lastRow);
    const auto base = static_cast<std::uint32_t>(firstRow);
    if (IsDescending(order)) {
        std::stable_sort(rows.begin(), rows.end(),
                         [&](std::uint32_t a, std::uint32_t b) { return keys.Compare(b - base, a - base) < 0; });
    } else {
        std::stable_sort(rows.begin(), rows.end(),
                         [&](std::uint32_t a, std::uint32_t b) { return keys.Compare(a - base, b - base) < 0; });
    }
    return rows;
}

std::vector<std::uint32_t> SortedByQuestion(int firstRow, int lastRow, const std::function<int(int, int)>& compare) {
    // Merging from runs of one row upward: unlike the standard sorts it stays within bounds whatever it is told.
    std::vector<std::uint32_t> rows = Numbers(firstRow, lastRow);
    std::vector<std::uint32_t> merged(rows.size());
    for (std::size_t run = 1; run < rows.size(); run *= 2) {
        for (std::size_t start = 0; start < rows.size(); start += 2 * run) {
            const std::size_t middle = std::min(start + run, rows.size());
            const std::size_t end = std::min(start + 2 * run, rows.size());
            std::size_t left = start;
            std::size_t right = middle;
            for (std::size_t out = start; out < end; ++out) {
                const bool takeLeft = left < middle && (right == end || compare(static_cast<int>(rows[left]),
                                                                                static_cast<int>(rows[right])) <= 0);
                merged[out] = rows[takeLeft ? left++ : right++];
            }
        }
        rows.swap(merged);
    }
    return rows;
}

void Grid::Sort(GridSort order) {
    if (order == GridSort::none || Rows() == 0 || Cols() == 0) {
        return;
    }
    const bool selected = row_ != rowSel_;
    const int first = selected ? std::max(fixedRows_, std::min(row_, rowSel_)) : fixedRows_;
    const int last = selected ? std::max(row_, rowSel_) : Rows() - 1;
    if (last <= first) {
        return;
    }
    std::vector<std::uint32_t> rows;
    if (order == GridSort::custom) {
        const std::uint64_t version = structureVersion_;
        rows = SortedByQuestion(first, last, [&](int row1, int row2) {
            const int result = AskOrder(row1, row2);
            if (structureVersion_ != version) {
                Refuse(errors::invalidProcedureCall, u"Rows were changed while they were being sorted.");
            }
            return result;
        });
    } else {
        rows = SortedRows(*this, order, first, last, std::min(col_, colSel_), std::max(col_, colSel_));
    }
    for (std::uint32_t& row : rows) {
        row = store_.IdAt(static_cast<int>(row));
    }
    store_.Reorder(first, rows);
    ++structureVersion_;
    LayoutChanged(first, 0);
}

}  // namespace qvx::flexgrid
