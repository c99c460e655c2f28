#include "controls/grid/duplicate_rows.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <vector>

#include "common/number_text.h"
#include "common/run_time_error.h"
#include "controls/grid/aggregates.h"
#include "controls/grid/column_lists.h"
#include "controls/grid/row_key.h"
#include "controls/grid/row_operations.h"

namespace qvx::grid {
namespace {

// What makes two rows equal: their texts from a column on.
struct WholeRows {
    using Key = flexgrid::CellView;
    int firstCol;
    Key KeyOf(const flexgrid::RowView& cells) const { return RowKey(cells, firstCol); }
    static std::uint64_t HashOf(const Key& key) { return HashOfKey(key); }
    static bool Equal(const Key& first, const Key& second) { return EqualKeys(first, second); }
};

// What makes two rows equal: the cells of some columns.
struct ChosenColumns {
    using Key = std::optional<flexgrid::RowView>;
    const std::vector<int>& columns;
    static Key KeyOf(const flexgrid::RowView& cells) { return cells; }
    std::uint64_t HashOf(const Key& key) const {
        std::uint64_t hash = 0;
        for (const int col : columns) hash = std::rotl(hash, 23) * 0x9E3779B97F4A7C15 ^ HashOfKey((*key)[col]);
        return hash;
    }
    bool Equal(const Key& first, const Key& second) const {
        return std::all_of(columns.begin(), columns.end(),
                           [&](int col) { return EqualKeys((*first)[col], (*second)[col]); });
    }
};

// The rows so far by their keys, in a hash table that uses the next free slot on a collision.
template <class Comparison>
class RowsByKey {
  public:
    using Key = typename Comparison::Key;

    RowsByKey(const flexgrid::Grid& grid, const Comparison& comparison, int rows)
        : grid_(grid), comparison_(comparison), slots_(std::bit_ceil(static_cast<std::size_t>(rows) * 3 / 2 + 1)) {}

    // Prefetches the slot of a hash that is looked up soon.
    void Fetch(std::uint64_t hash) const { __builtin_prefetch(&slots_[Home(hash)]); }

    // Returns the row above `below` with this key; else -1, and then the key is added for `row` if that is at least 0.
    int FindOrAdd(std::uint64_t hash, const Key& key, int below, int row) {
        const auto mark = static_cast<std::uint32_t>(hash >> 32);
        std::size_t slot = Home(hash);
        for (; slots_[slot].row != none; slot = (slot + 1) & (slots_.size() - 1)) {
            const Slot& taken = slots_[slot];
            if (taken.mark == mark && taken.row < below && comparison_.Equal(KeyOf(taken.row), key)) return taken.row;
        }
        if (row >= 0) slots_[slot] = {row, mark};
        return none;
    }

  private:
    static constexpr int none = -1;
    struct Slot {
        int row = none;
        std::uint32_t mark = 0;  // the hash's other half
    };

    std::size_t Home(std::uint64_t hash) const { return static_cast<std::size_t>(hash) & (slots_.size() - 1); }
    Key KeyOf(int row) const {
        Key key;
        grid_.ForEachRow(row, row, [&](int, const flexgrid::RowView& cells) { key = comparison_.KeyOf(cells); });
        return key;
    }

    const flexgrid::Grid& grid_;
    const Comparison& comparison_;
    std::vector<Slot> slots_;  // at least a third of them free
};

template <class Comparison>
std::optional<RowPair> FirstPair(const flexgrid::Grid& grid, const Comparison& comparison) {
    const int first = grid.FixedRows();
    const int rows = grid.Rows();
    if (rows - first < 2) return std::nullopt;
    RowsByKey<Comparison> seen(grid, comparison, rows - first);
    std::optional<RowPair> found;
    // Rows are processed in batches, so that their slots are fetched from memory while other rows are hashed.
    constexpr int batchSize = 32;
    struct Entry {
        typename Comparison::Key key;
        std::uint64_t hash = 0;
    };
    std::array<Entry, batchSize> batch;
    for (int start = first; start < rows; start += batchSize) {
        const int end = std::min(start + batchSize, rows);
        Entry* next = batch.data();
        grid.ForEachRow(start, end - 1, [&](int, const flexgrid::RowView& cells) {
            next->key = comparison.KeyOf(cells);
            next->hash = comparison.HashOf(next->key);
            seen.Fetch(next->hash);
            ++next;
        });
        for (int row = start; row < end; ++row) {
            const Entry& entry = batch[static_cast<std::size_t>(row - start)];
            // Once there is a pair, only one whose first row is further up matters, and no row from here on can become
            // such a first row.
            const int above = seen.FindOrAdd(entry.hash, entry.key, found ? found->first : row, found ? -1 : row);
            if (above >= 0) found = {above, row};
            if (above == first) return found;
        }
    }
    return found;
}

}  // namespace

std::optional<RowPair> FirstDuplicate(const flexgrid::Grid& grid, int firstCol) {
    return FirstPair(grid, WholeRows{firstCol});
}

std::optional<RowPair> FirstDuplicateIn(const flexgrid::Grid& grid, const ControlState& state, TextView columns) {
    if (!HasDataRows(grid)) return std::nullopt;
    if (columns.empty()) return FirstDuplicate(grid, FirstRecordColumn(state));
    std::vector<int> listed;
    for (int col = 0; col < grid.Cols(); ++col)
        if (IsListedColumn(grid, columns, col)) listed.push_back(col);
    if (listed.empty()) throw RunTimeError(errors::invalidPropertyValue, u"Invalid property value");
    return FirstPair(grid, ChosenColumns{listed});
}

Text DuplicatesPrompt(const RowPair& rows) {
    return u"Duplicate Records Found. Records '" + IntegerToText(rows.first) + u"' and '" + IntegerToText(rows.second) +
           u"'";
}

}  // namespace qvx::grid
