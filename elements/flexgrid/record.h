// A row's cells packed into one record.
//
//     kind   how wide the numbers are (1, 2 or 4 bytes) and whether the text is Latin-1 or UTF-16
//     count  of cells; those behind the last that holds text are left out
//     ends   for each cell, the number of characters up to its end
//     text   of all cells, one behind the other
//
// "Ann", "", "42" takes 10 bytes: 00 03 03 03 05 'A' 'n' 'n' '4' '2'. A row without any text has no record.
#pragma once

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

#include "common/text.h"
#include "elements/flexgrid/cell_view.h"

namespace qvx::flexgrid {

namespace record {

// The kind's two low bits tell the width of the numbers, the third the text's encoding.
constexpr std::uint8_t widthBits = 3;
constexpr std::uint8_t wideBit = 4;

template <class Number>
constexpr std::uint8_t widthCode = sizeof(Number) == 1   ? 0
                                   : sizeof(Number) == 2 ? 1
                                                         : 2;

// The parts of a record whose numbers have this type. Records start at multiples of four bytes, so that numbers and
// UTF-16 lie aligned.
template <class Number>
struct Layout {
    static std::size_t TextStart(std::size_t count, bool wide) {
        const std::size_t start = (2 + count) * sizeof(Number);
        return wide ? (start + 1) & ~std::size_t{1} : start;
    }
    static std::size_t Count(const std::uint8_t* bytes) { return reinterpret_cast<const Number*>(bytes)[1]; }
    static const Number* Ends(const std::uint8_t* bytes) { return reinterpret_cast<const Number*>(bytes) + 2; }

    static CellView Cell(const std::uint8_t* bytes, std::size_t col) {
        const std::size_t count = Count(bytes);
        if (col >= count) {
            return {};
        }
        const Number* ends = Ends(bytes);
        const std::size_t start = col == 0 ? 0 : ends[col - 1];
        const std::size_t size = ends[col] - start;
        if ((bytes[0] & wideBit) == 0) {
            return {bytes + TextStart(count, false) + start, size};
        }
        return {reinterpret_cast<const char16_t*>(bytes + TextStart(count, true)) + start, size};
    }
    static std::size_t Size(const std::uint8_t* bytes) {
        const std::size_t count = Count(bytes);
        const bool wide = (bytes[0] & wideBit) != 0;
        return TextStart(count, wide) + Ends(bytes)[count - 1] * (wide ? 2u : 1u);
    }
};

// use(Layout) with the layout of this record's numbers.
template <class Use>
auto With(std::uint8_t kind, Use&& use) {
    switch (kind & widthBits) {
        case 0:
            return use(Layout<std::uint8_t>{});
        case 1:
            return use(Layout<std::uint16_t>{});
        default:
            return use(Layout<std::uint32_t>{});
    }
}

}  // namespace record

// The cells of a row; good until the grid is next changed.
class RowView {
  public:
    // nullptr is a row without text.
    explicit RowView(const std::uint8_t* bytes) : bytes_(bytes) {}

    // Any column from 0 on; empty behind the last that holds text.
    CellView operator[](int col) const {
        assert(col >= 0);
        if (!bytes_) {
            return {};
        }
        const auto at = static_cast<std::size_t>(col);
        if (bytes_[0] != record::widthCode<std::uint8_t>) {
            return record::With(bytes_[0], [&](auto layout) { return layout.Cell(bytes_, at); });
        }
        // Nearly all rows: short and of Latin-1.
        const std::size_t count = bytes_[1];
        if (at >= count) {
            return {};
        }
        const std::uint8_t* ends = bytes_ + 2;
        const std::size_t start = at == 0 ? 0 : ends[at - 1];
        return {ends + count + start, ends[at] - start};
    }
    // The texts of column `col` and of all behind it as one, without anything between them.
    CellView TextFrom(int col) const {
        assert(col >= 0);
        if (col >= Count()) {
            return {};
        }
        const CellView first = (*this)[col];
        const CellView last = (*this)[Count() - 1];
        // A record's texts lie one behind the other.
        return first.IsLatin1()
                   ? CellView(Bytes(first), static_cast<std::size_t>(Bytes(last) - Bytes(first)) + last.Size())
                   : CellView(first.Wide().data(),
                              static_cast<std::size_t>(last.Wide().data() - first.Wide().data()) + last.Size());
    }
    // Cells up to the last that holds text.
    int Count() const {
        return bytes_ ? static_cast<int>(record::With(bytes_[0], [&](auto layout) { return layout.Count(bytes_); }))
                      : 0;
    }
    // The record; nullptr for a row without text.
    const std::uint8_t* Data() const { return bytes_; }
    // Bytes of the record.
    std::size_t Size() const {
        return bytes_ ? record::With(bytes_[0], [&](auto layout) { return layout.Size(bytes_); }) : 0;
    }

  private:
    static const std::uint8_t* Bytes(const CellView& cell) {
        return reinterpret_cast<const std::uint8_t*>(cell.Latin1().data());
    }

    const std::uint8_t* bytes_;
};

// Builds records in a buffer of its own, one at a time.
class RecordBuilder {
  public:
    // The record of a row of tab-separated cells, at most `cols` of them. Empty when none holds text. Good until the
    // next call; it need not lie aligned.
    std::span<const std::uint8_t> FromItem(TextView item, int cols);
    // The record of these cells.
    std::span<const std::uint8_t> FromCells(std::span<const CellView> cells);
    // The record of the same row with another text in column `col`.
    std::span<const std::uint8_t> WithCell(const RowView& row, int col, TextView text);

  private:
    // Of fewer than 255 characters; `latin1` tells whether they were all read and the record holds.
    std::span<const std::uint8_t> FromShortItem(TextView item, std::size_t most, bool& latin1);
    // Empty when the old or the new record is no short one of Latin-1, or its last cell becomes empty.
    std::span<const std::uint8_t> WithShortCell(const std::uint8_t* old, std::size_t col, TextView text);
    template <class Number>
    std::span<const std::uint8_t> Build(std::span<const CellView> cells, bool wide, std::size_t characters);

    std::vector<std::uint32_t> buffer_;  // of words, for alignment
    std::vector<CellView> cells_;
};

// Cuts a record down to its first cells, in place. Returns the size of what is left, 0 when no text is.
std::size_t TruncateRecord(std::uint8_t* bytes, int cols) noexcept;

}  // namespace qvx::flexgrid
