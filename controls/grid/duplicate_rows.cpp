#include "controls/grid/duplicate_rows.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <vector>

#include "common/number_text.h"
#include "controls/grid/row_key.h"

namespace qvx::grid {
namespace {

// The rows so far by their keys, in a hash table that uses the next free slot on a collision.
class RowsByKey {
  public:
    RowsByKey(const flexgrid::Grid& grid, int firstCol, int rows)
        : grid_(grid), firstCol_(firstCol), slots_(std::bit_ceil(static_cast<std::size_t>(rows) * 3 / 2 + 1)) {}

    // Prefetches the slot of a hash that is looked up soon.
    void Fetch(std::uint64_t hash) const { __builtin_prefetch(&slots_[Home(hash)]); }

    // Returns the row above `below` with this key; else -1, and then the key is added for `row` if that is at least 0.
    int FindOrAdd(std::uint64_t hash, flexgrid::CellView key, int below, int row) {
        const auto mark = static_cast<std::uint32_t>(hash >> 32);
        std::size_t slot = Home(hash);
        for (; slots_[slot].row != none; slot = (slot + 1) & (slots_.size() - 1)) {
            const Slot& taken = slots_[slot];
            if (taken.mark == mark && taken.row < below && EqualKeys(KeyOf(taken.row), key)) return taken.row;
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
    flexgrid::CellView KeyOf(int row) const {
        flexgrid::CellView key;
        grid_.ForEachRow(row, row, [&](int, const flexgrid::RowView& cells) { key = RowKey(cells, firstCol_); });
        return key;
    }

    const flexgrid::Grid& grid_;
    int firstCol_;
    std::vector<Slot> slots_;  // at least a third of them free
};

}  // namespace

std::optional<RowPair> FirstDuplicate(const flexgrid::Grid& grid, int firstCol) {
    const int first = grid.FixedRows();
    const int rows = grid.Rows();
    if (rows - first < 2) return std::nullopt;
    RowsByKey seen(grid, firstCol, rows - first);
    std::optional<RowPair> found;
    // Rows are processed in batches, so that their slots are fetched from memory while other rows are hashed.
    constexpr int batchSize = 32;
    struct Entry {
        flexgrid::CellView key;
        std::uint64_t hash = 0;
    };
    std::array<Entry, batchSize> batch;
    for (int start = first; start < rows; start += batchSize) {
        const int end = std::min(start + batchSize, rows);
        Entry* next = batch.data();
        grid.ForEachRow(start, end - 1, [&](int, const flexgrid::RowView& cells) {
            next->key = RowKey(cells, firstCol);
            next->hash = HashOfKey(next->key);
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

Text DuplicatesPrompt(const RowPair& rows) {
    return u"Duplicate Records Found. Records '" + IntegerToText(rows.first) + u"' and '" + IntegerToText(rows.second) +
           u"'";
}

}  // namespace qvx::grid
