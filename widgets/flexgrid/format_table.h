// Formats of the cells that have one. A row refers to the pattern of its formats, and rows with the same appearance
// share one, so that colouring a million rows in two colours takes two patterns. Rows are known by identity: moving and
// sorting them changes nothing here.
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
    // Returns nullptr for a cell without a format of its own; valid until the next change.
    const CellFormat* Find(RowId row, int col) const {
        const Node* node = FindNode(row, col);
        return node ? &node->format : nullptr;
    }
    // The cell's font, kept until FontsChanged.
    const FontSpec& FontOf(RowId row, int col, const FontSpec& gridFont) const;
    void FontsChanged() { ++fontVersion_; }

    // Applies `change` once to each distinct format among the cells of columns firstCol to lastCol in the given rows.
    // Strong guarantee.
    void ChangeCells(std::span<const RowId> rows, int firstCol, int lastCol,
                     const std::function<void(CellFormat&)>& change);
    RowFormats OfRow(RowId row) const {
        const SharedPattern* found = rows_.Find(row);
        return found ? *found : nullptr;
    }
    // After this, the next SetRow cannot fail.
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
        mutable FontSpec font;  // the grid's font with this format's changes, as of fontVersion
        mutable std::uint64_t fontVersion = 0;
    };

    const Node* FindNode(RowId row, int col) const;
    // Returns a recently created pattern that is equal, otherwise a new one; nullptr for one without entries.
    SharedPattern Share(Pattern pattern);
    static Pattern Changed(const Pattern* pattern, int firstCol, int lastCol,
                           const std::function<void(CellFormat&)>& change);
    // Replaces every pattern in use with the result of `derive`.
    void ReplacePatterns(const std::function<Pattern(const Pattern&)>& derive);

    SparseMap<SharedPattern> rows_;  // no entry means nullptr or empty
    std::array<SharedPattern, 8> recent_;
    std::size_t nextRecent_ = 0;
    std::uint64_t fontVersion_ = 1;
};

}  // namespace qvx::flexgrid
