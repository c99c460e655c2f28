// Formats of the few cells that have one, by row identity and column.
#pragma once

#include <map>
#include <utility>

#include "elements/flexgrid/cell_format.h"
#include "elements/flexgrid/sparse_map.h"

namespace qvx::flexgrid {

class FormatTable {
  public:
    bool Empty() const { return formats_.empty(); }
    const CellFormat* Find(RowId row, int col) const {
        const auto found = formats_.find({row, col});
        return found == formats_.end() ? nullptr : &found->second.format;
    }
    // The font of a cell that has a format of its own.
    const FontSpec& FontOf(RowId row, int col, const FontSpec& gridFont) const;
    // change(CellFormat&) on the cells of columns firstCol to lastCol in the rows given.
    template <class Rows, class Change>
    void ChangeCells(const Rows& rows, int firstCol, int lastCol, Change&& change) {
        auto changed = formats_;
        for (const RowId row : rows) {
            for (int col = firstCol; col <= lastCol; ++col) {
                Entry& entry = changed[{row, col}];
                change(entry.format);
                if (entry.format == CellFormat{}) {
                    changed.erase({row, col});
                }
            }
        }
        formats_.swap(changed);
    }
    void FontsChanged() {}
    void RemoveRow(RowId row) noexcept {
        formats_.erase(formats_.lower_bound({row, 0}), formats_.lower_bound({row + 1, 0}));
    }
    void TruncateColumns(int cols);
    void MoveColumn(int from, int to);
    void Clear() noexcept { formats_.clear(); }

  private:
    struct Entry {
        CellFormat format;
        mutable FontSpec font;
    };
    std::map<std::pair<RowId, int>, Entry> formats_;
};

}  // namespace qvx::flexgrid
