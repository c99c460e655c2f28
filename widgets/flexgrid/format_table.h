// Formats of the cells that have one. A row points to the pattern of its formats, and rows that look the same share
// one, so that colouring a million rows in two colours takes two patterns. Rows are known by identity: moving and
// sorting them touches nothing here.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "widgets/flexgrid/cell_format.h"
#include "widgets/flexgrid/sparse_map.h"

namespace qvx::flexgrid {

class FormatTable {
    struct Node;
    struct Entry {
        int col;
        std::shared_ptr<const Node> node;
    };
    using Pattern = std::vector<Entry>;  // columns ascend
    using SharedPattern = std::shared_ptr<const Pattern>;

  public:
    // The formats of a whole row; null for none.
    using RowFormats = SharedPattern;

    bool Empty() const { return rows_.Empty(); }
    // nullptr for a cell without a format of its own; good until the next change.
    const CellFormat* Find(RowId row, int col) const {
        const Node* node = FindNode(row, col);
        return node ? &node->format : nullptr;
    }
    // The cell's font, kept until FontsChanged.
    const FontSpec& FontOf(RowId row, int col, const FontSpec& gridFont) const;
    void FontsChanged() { ++fontVersion_; }

    // `change` is made once to each kind of format among the cells of columns firstCol to lastCol in the given rows.
    // Strong guarantee.
    void ChangeCells(std::span<const RowId> rows, int firstCol, int lastCol,
                     const std::function<void(CellFormat&)>& change);
    RowFormats OfRow(RowId row) const {
        const SharedPattern* found = rows_.Find(row);
        return found ? *found : nullptr;
    }
    // The next SetRow cannot fail.
    void ReserveForRow() { rows_.Reserve(rows_.Size() + 1); }
    void SetRow(RowId row, RowFormats formats) {
        if (formats) {
            rows_.Set(row, std::move(formats));
        } else {
            rows_.Erase(row);
        }
    }
    void RemoveRow(RowId row) noexcept { rows_.Erase(row); }
    // Strong guarantee.
    void TruncateColumns(int cols);
    void MoveColumn(int from, int to);
    void Clear() noexcept;

  private:
    struct Node {
        CellFormat format;
        mutable FontSpec font;  // the grid's with this format's changes, as of fontVersion
        mutable std::uint64_t fontVersion = 0;
    };

    const Node* FindNode(RowId row, int col) const;
    // One of the patterns made lately that looks the same, else a new one; nullptr for one without entries.
    SharedPattern Share(Pattern pattern);
    static Pattern Changed(const Pattern* pattern, int firstCol, int lastCol,
                           const std::function<void(CellFormat&)>& change);
    // Every pattern in use replaced by what `derive` makes of it.
    void ReplacePatterns(const std::function<Pattern(const Pattern&)>& derive);

    SparseMap<SharedPattern> rows_;  // none is nullptr or empty
    std::array<SharedPattern, 8> recent_;
    std::size_t nextRecent_ = 0;
    std::uint64_t fontVersion_ = 1;
};

}  // namespace qvx::flexgrid
