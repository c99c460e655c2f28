// The texts that a row had before it was changed.
#pragma once

#include <cstdint>
#include <vector>

#include "widgets/flexgrid/record.h"

namespace qvx::grid {

struct RowOriginal {
    RowOriginal() = default;
    [[gnu::cold]] explicit RowOriginal(const flexgrid::RowView& cells);

    flexgrid::RowView Cells() const {
        return flexgrid::RowView(record.empty() ? nullptr : reinterpret_cast<const std::uint8_t*>(record.data()));
    }
    [[gnu::cold]] void Cut(int cols) noexcept;
    // Returns the record after the column `from` has moved to `to`.
    [[gnu::cold]] std::vector<std::uint32_t> WithMovedColumn(int from, int to) const;

    bool isNew = false;                 // the row had no originals
    int number = 0;                     // of the record that a removed row was loaded from
    std::size_t place = 0;              // among the deleted rows, from 1; 0 for none
    std::vector<std::uint32_t> record;  // as in record.h, in words; empty for a row without text
};

}  // namespace qvx::grid
