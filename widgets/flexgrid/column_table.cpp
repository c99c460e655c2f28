#include "widgets/flexgrid/column_table.h"

#include "common/geometry.h"

namespace qvx::flexgrid {

int ShownPixels(int twips, int dotsPerInch) { return twips <= 0 ? 0 : std::max(1, TwipsToPixels(twips, dotsPerInch)); }

void ColumnTable::Resize(int count) {
    columns_.resize(static_cast<std::size_t>(count), added_);
    starts_.clear();
}

void ColumnTable::Move(int col, int position) noexcept {
    const auto from = columns_.begin() + col;
    const auto to = columns_.begin() + position;
    if (col < position) {
        std::rotate(from, from + 1, to + 1);
    } else {
        std::rotate(to, from, from + 1);
    }
    starts_.clear();
}

const std::vector<std::int64_t>& ColumnTable::Starts(int dotsPerInch) const {
    if (starts_.empty() || startsDpi_ != dotsPerInch) {
        starts_.clear();
        starts_.reserve(columns_.size() + 1);
        std::int64_t x = 0;
        starts_.push_back(x);
        for (const ColumnSettings& column : columns_) {
            x += ShownPixels(column.Width(), dotsPerInch);
            starts_.push_back(x);
        }
        startsDpi_ = dotsPerInch;
    }
    return starts_;
}

std::int64_t ColumnTable::LeftOf(int col, int dotsPerInch) const {
    return Starts(dotsPerInch)[static_cast<std::size_t>(col)];
}

int ColumnTable::At(std::int64_t x, int dotsPerInch) const {
    const std::vector<std::int64_t>& starts = Starts(dotsPerInch);
    return static_cast<int>(std::upper_bound(starts.begin(), starts.end(), x) - starts.begin()) - 1;
}

}  // namespace qvx::flexgrid
