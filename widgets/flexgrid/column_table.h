// The columns of a grid: their settings, and the pixel positions that follow from their widths.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "widgets/flexgrid/enums.h"

namespace qvx::flexgrid {

constexpr int defaultColWidth = 960;  // twips

// Returns the pixels of a row or column of that size at a resolution; 0 for a hidden one, and otherwise at least 1.
int ShownPixels(int twips, int dotsPerInch);

struct ColumnSettings {
    static constexpr int defaultWidth = -1;
    int width = defaultWidth;  // twips, or defaultWidth
    GridAlignment alignment = GridAlignment::general;
    GridAlignment fixedAlignment = GridAlignment::general;
    bool hasFixedAlignment = false;
    bool merge = false;
    std::int32_t data = 0;
    int shownWidth = defaultWidth;  // what a column without a width had before
    std::uint32_t id = 0;           // 0 until somebody has asked for it
    int sortPlace = 0;              // among the columns that the rows are sorted by, from 1; 0 for none
    bool sortDescending = false;

    int Width() const { return width == defaultWidth ? defaultColWidth : width; }
};

// A column that rows are sorted by.
struct SortMark {
    int col = 0;
    bool descending = false;
    friend bool operator==(const SortMark&, const SortMark&) = default;
};

class ColumnTable {
  public:
    explicit ColumnTable(int count) : columns_(static_cast<std::size_t>(count)) {}

    int Count() const { return static_cast<int>(columns_.size()); }
    const ColumnSettings& operator[](int col) const { return columns_[static_cast<std::size_t>(col)]; }

    // After Reserve, Resize does not allocate up to that count.
    void Reserve(int count) { columns_.reserve(static_cast<std::size_t>(count)); }
    void Resize(int count);
    void Move(int col, int position) noexcept;

    // Calls set(ColumnSettings&) for one column.
    template <class Set>
    void Change(int col, Set&& set) {
        set(columns_[static_cast<std::size_t>(col)]);
        starts_.clear();
    }
    // The same for each column that there is.
    template <class Set>
    void ChangeEach(Set&& set) {
        std::for_each(columns_.begin(), columns_.end(), set);
        starts_.clear();
    }
    // The same for those that Resize will add, too.
    template <class Set>
    void ChangeAll(Set&& set) {
        set(added_);
        ChangeEach(set);
    }

    // The left edge in pixels at a resolution; `col` may be Count, for the full width.
    std::int64_t LeftOf(int col, int dotsPerInch) const;
    // The shown column at a position that is not negative; Count after the last.
    int At(std::int64_t x, int dotsPerInch) const;

  private:
    const std::vector<std::int64_t>& Starts(int dotsPerInch) const;

    std::vector<ColumnSettings> columns_;
    ColumnSettings added_;                      // what a new column starts with
    mutable std::vector<std::int64_t> starts_;  // empty, or Count + 1 positions
    mutable int startsDpi_ = 0;
};

}  // namespace qvx::flexgrid
