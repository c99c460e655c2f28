#include "widgets/flexgrid/sort.h"

#include <algorithm>
#include <bit>
#include <numeric>

#include "common/numeric_reading.h"
#include "common/text_compare.h"
#include "widgets/flexgrid/grid.h"
#include "widgets/flexgrid/grid_errors.h"

namespace qvx::flexgrid {

namespace {

// The sort key of a cell, read once. `rank` decides most comparisons: it grows with the number, or contains the first
// characters of the text. Where ranks are equal, the rest decides.
struct Key {
    std::uint64_t rank = 0;
    bool isText = false;
    std::uint32_t size = 0;  // of the text
    union {
        double number = 0;
        std::size_t start;  // of the text in the pool
    };
};

class Keys {
  public:
    Keys(GridSort order, int columns) : order_(order), columns_(static_cast<std::size_t>(columns)) {}

    void Reserve(std::size_t rows) { keys_.reserve(rows * columns_); }
    void Add(const CellView& cell);
    // Rows count from 0 in the order they were added.
    std::uint64_t FirstRank(std::size_t row) const { return keys_[row * columns_].rank; }
    // Returns a value below, at or above 0.
    int Compare(std::size_t a, std::size_t b) const;

  private:
    Key TextKey(TextView text);
    static Key NumberKey(double number);
    int CompareKeys(const Key& a, const Key& b) const;

    GridSort order_;
    std::size_t columns_;
    std::vector<Key> keys_;
    Text pool_;  // all texts
    Text scratch_;
};

Key Keys::TextKey(TextView text) {
    Key key;
    key.isText = true;
    key.start = pool_.size();
    key.size = static_cast<std::uint32_t>(text.size());
    for (std::size_t i = 0; i < 4; ++i) {
        key.rank = key.rank << 16 | (i < text.size() ? text[i] : 0);
    }
    pool_.append(text);
    return key;
}

Key Keys::NumberKey(double number) {
    Key key;
    key.number = number == 0 ? 0 : number;  // both zeros are equal
    const auto bits = std::bit_cast<std::uint64_t>(key.number);
    key.rank = (bits >> 63) != 0 ? ~bits : bits | std::uint64_t{1} << 63;
    return key;
}

void Keys::Add(const CellView& cell) {
    Key key;
    switch (order_) {
        case GridSort::numericAscending:
        case GridSort::numericDescending:
            key = NumberKey(cell.IsLatin1() ? NumericValue(cell.Latin1()) : NumericValue(cell.Wide()));
            break;
        case GridSort::stringAscending:
        case GridSort::stringDescending:
            key = TextKey(cell.AsWide(scratch_));
            break;
        case GridSort::genericAscending:
        case GridSort::genericDescending: {
            const TextView text = cell.AsWide(scratch_);
            const auto number = ReadNumeric(text);
            key = number ? NumberKey(*number) : TextKey(FoldedText(text));
            // Numbers come before texts; the bit for that displaces the last bit, for which the remaining comparison
            // makes up.
            key.rank = key.rank >> 1 | (number ? 0 : std::uint64_t{1} << 63);
            break;
        }
        default:
            key = TextKey(FoldedText(cell.AsWide(scratch_)));
            break;
    }
    keys_.push_back(key);
}

int Keys::CompareKeys(const Key& a, const Key& b) const {
    if (a.rank != b.rank) {
        return a.rank < b.rank ? -1 : 1;
    }
    if (!a.isText) {
        return a.number < b.number ? -1 : a.number > b.number ? 1 : 0;
    }
    const TextView pool(pool_);
    return pool.substr(a.start, a.size).compare(pool.substr(b.start, b.size));
}

int Keys::Compare(std::size_t a, std::size_t b) const {
    for (std::size_t i = 0; i < columns_; ++i) {
        if (const int result = CompareKeys(keys_[a * columns_ + i], keys_[b * columns_ + i]); result != 0) {
            return result;
        }
    }
    return 0;
}

bool IsDescending(GridSort order) { return static_cast<int>(order) % 2 == 0; }

std::vector<std::uint32_t> Numbers(int first, int last) {
    std::vector<std::uint32_t> rows(static_cast<std::size_t>(last - first) + 1);
    std::iota(rows.begin(), rows.end(), static_cast<std::uint32_t>(first));
    return rows;
}

}  // namespace

std::vector<std::uint32_t> SortedRows(const Grid& grid, GridSort order, int firstRow, int lastRow, int firstCol,
                                      int lastCol) {
    Keys keys(order, lastCol - firstCol + 1);
    keys.Reserve(static_cast<std::size_t>(lastRow - firstRow) + 1);
    grid.ForEachRow(firstRow, lastRow, [&](int, const RowView& cells) {
        for (int col = firstCol; col <= lastCol; ++col) {
            keys.Add(cells[col]);
        }
    });
    // The first rank is stored with the row number, so that most comparisons access nothing else. For a descending
    // order, the comparison is reversed, not the result: equal rows keep their order.
    struct Item {
        std::uint64_t rank;
        std::uint32_t row;
    };
    const bool descending = IsDescending(order);
    std::vector<Item> items(static_cast<std::size_t>(lastRow - firstRow) + 1);
    for (std::size_t i = 0; i < items.size(); ++i) {
        items[i] = {descending ? ~keys.FirstRank(i) : keys.FirstRank(i), static_cast<std::uint32_t>(i)};
    }
    std::stable_sort(items.begin(), items.end(), [&](const Item& a, const Item& b) {
        if (a.rank != b.rank) {
            return a.rank < b.rank;
        }
        return descending ? keys.Compare(b.row, a.row) < 0 : keys.Compare(a.row, b.row) < 0;
    });
    std::vector<std::uint32_t> rows;
    rows.reserve(items.size());
    for (const Item& item : items) {
        rows.push_back(item.row + static_cast<std::uint32_t>(firstRow));
    }
    return rows;
}

std::vector<std::uint32_t> SortedByQuestion(int firstRow, int lastRow, const std::function<int(int, int)>& compare) {
    // A merge sort from runs of one row upwards: unlike the standard sorts, it stays within bounds whatever the
    // comparison returns.
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
    store_.AnnounceOrder();
    const CellsMoving moving(*this);
    store_.Reorder(first, rows);
    ++structureVersion_;
    ClearSortMarks();
    LayoutChanged(first, 0);
}

void Grid::OrderRows(int first, std::span<const std::uint32_t> rows, std::span<const SortMark> marks) {
    std::vector<std::uint32_t> ids;
    ids.reserve(rows.size());
    int row = row_;
    for (const std::uint32_t from : rows) {
        if (static_cast<int>(from) == row_) {
            row = first + static_cast<int>(ids.size());
        }
        ids.push_back(store_.IdAt(static_cast<int>(from)));
    }
    store_.AnnounceOrder();
    const Cursor before = CurrentCursor();
    {
        const CellsMoving moving(*this);
        store_.Reorder(first, ids);
        ++structureVersion_;
        row_ = row;
        rowSel_ = row;
        SetSortMarks(marks);
        LayoutChanged(first, 0);
    }
    // The current cell is still the same record's: it is neither left nor entered.
    if (row != before.row) {
        listeners_.NotifyAfterwards([](GridListener& listener) { listener.RowColChange(); });
    }
    if (CurrentCursor() != before) {
        listeners_.NotifyAfterwards([](GridListener& listener) { listener.SelChange(); });
    }
}

std::vector<SortMark> Grid::SortMarks() const {
    std::vector<std::pair<int, SortMark>> places;
    for (int col = 0; col < Cols(); ++col) {
        if (columns_[col].sortPlace > 0) {
            places.push_back({columns_[col].sortPlace, {col, columns_[col].sortDescending}});
        }
    }
    // A column may have been removed since, so that the places have gaps.
    std::sort(places.begin(), places.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<SortMark> marks;
    marks.reserve(places.size());
    for (const auto& [place, mark] : places) {
        marks.push_back(mark);
    }
    return marks;
}

void Grid::SetSortMarks(std::span<const SortMark> marks) noexcept {
    bool changed = !marks.empty();
    columns_.ChangeEach([&](ColumnSettings& column) {
        changed = changed || column.sortPlace > 0;
        column.sortPlace = 0;
    });
    int place = 0;
    for (const SortMark& mark : marks) {
        columns_.Change(mark.col, [&](ColumnSettings& column) {
            column.sortPlace = ++place;
            column.sortDescending = mark.descending;
        });
    }
    if (changed && Rows() > 0) {
        NotifyChange(GridChange::texts, {0, 0, 0, Cols() - 1});
    }
}

}  // namespace qvx::flexgrid
