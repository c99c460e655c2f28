#include "controls/grid/csv_import.h"

#include <algorithm>

#include "common/text_compare.h"

namespace qvx::grid {
namespace {

std::size_t LineEndsIn(TextView text) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < text.size(); ++i)
        count += text[i] == u'\n' || (text[i] == u'\r' && (i + 1 == text.size() || text[i + 1] != u'\n'));
    return count;
}

}  // namespace

CsvRows::CsvRows(const flexgrid::Grid& grid, TextView text, char16_t separator, bool hasHeader)
    : cells_(text, separator), texts_(static_cast<std::size_t>(grid.Cols()), keepsCell) {
    if (text.empty()) return;
    if (hasHeader) {
        std::vector<Text> wanted;
        wanted.reserve(texts_.size());
        for (int col = 0; col < grid.Cols(); ++col) wanted.push_back(grid.Rows() > 0 ? grid.TextArray(col) : Text());
        std::vector<bool> found(wanted.size());
        for (const TextView caption : cells_.Row(0)) {
            captions_.emplace_back(caption);
            std::size_t col = 0;
            while (col < wanted.size() && (found[col] || !EqualNoCase(wanted[col], caption))) ++col;
            columns_.push_back(col < wanted.size() ? static_cast<int>(col) : noColumn);
            if (col < wanted.size()) found[col] = true;
        }
    } else {
        for (int col = 0; col < grid.Cols(); ++col) {
            if (grid.ColWidth(col) != 0) columns_.push_back(col);
        }
    }
    for (std::size_t row = hasHeader ? 1 : 0; row < cells_.Rows(); ++row) {
        const std::span<const TextView> cells = cells_.Row(row);
        if (cells.size() > 1 || !cells[0].empty() || cells_.Cols() == 1) rows_.push_back(row);
    }
}

std::span<const TextView> CsvRows::TextsOf(int row) {
    const std::span<const TextView> cells = cells_.Row(rows_[static_cast<std::size_t>(row)]);
    std::fill(texts_.begin(), texts_.end(), keepsCell);
    for (std::size_t i = 0; i < std::min(cells.size(), columns_.size()); ++i) {
        if (columns_[i] != noColumn) texts_[static_cast<std::size_t>(columns_[i])] = cells[i];
    }
    return texts_;
}

std::vector<Text> CsvRows::SurplusOf(int row) const {
    std::vector<Text> surplus;
    const std::span<const TextView> cells = cells_.Row(rows_[static_cast<std::size_t>(row)]);
    for (std::size_t i = columns_.size(); i < cells.size(); ++i) {
        if (!cells[i].empty()) surplus.emplace_back(cells[i]);
    }
    return surplus;
}

long CsvRows::LineOf(int row) {
    const TextView before = cells_.Before(rows_[static_cast<std::size_t>(row)]);
    if (before.size() > counted_) {
        line_ += static_cast<long>(LineEndsIn(before.substr(counted_)));
        counted_ = before.size();
    }
    return line_;
}

}  // namespace qvx::grid
