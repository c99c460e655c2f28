// A row's cells packed into one record.
//
//     kind   the width of the numbers (1, 2 or 4 bytes) and whether the text is Latin-1 or UTF-16
//     count  of cells up to the last that has text
//     ends   for each cell, the number of characters up to its end
//     text   of all cells, without separators
//
// "Ann", "", "42" takes 10 bytes: 00 03 03 03 05 'A' 'n' 'n' '4' '2'. A row without any text has no record.
#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "common/latin1.h"
#include "common/text.h"
#include "widgets/flexgrid/cell_view.h"

namespace qvx::flexgrid {

namespace record {

// The kind's two low bits are the width of the numbers, the third is the text's encoding.
constexpr std::uint8_t widthBits = 3;
constexpr std::uint8_t wideBit = 4;

template <class Number>
constexpr std::uint8_t widthCode = sizeof(Number) == 1   ? 0
                                   : sizeof(Number) == 2 ? 1
                                                         : 2;

// The parts of a record whose numbers have this type. Records start at multiples of four bytes, so that numbers and
// UTF-16 are aligned.
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

// Calls use(Layout) with the layout of this record's numbers.
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

// The cells of a row; valid until the grid is next changed.
class RowView {
  public:
    // nullptr means a row without text.
    explicit RowView(const std::uint8_t* bytes) : bytes_(bytes) {}
    // An empty record is that of a row without text.
    explicit RowView(std::span<const std::uint8_t> record) : bytes_(record.empty() ? nullptr : record.data()) {}

    // Returns any column from 0 on; empty after the last that has text.
    CellView operator[](int col) const {
        assert(col >= 0);
        if (!bytes_) {
            return {};
        }
        const auto at = static_cast<std::size_t>(col);
        if (!IsShort()) {
            return record::With(bytes_[0], [&](auto layout) { return layout.Cell(bytes_, at); });
        }
        // The fast path for nearly all rows, which are short and in Latin-1.
        const std::size_t count = bytes_[1];
        if (at >= count) {
            return {};
        }
        const std::uint8_t* ends = bytes_ + 2;
        const std::size_t start = at == 0 ? 0 : ends[at - 1];
        return {ends + count + start, ends[at] - start};
    }
    // Returns the texts of column `col` and of all later ones joined without a separator.
    CellView TextFrom(int col) const {
        assert(col >= 0);
        if (col >= Count()) {
            return {};
        }
        const CellView first = (*this)[col];
        const CellView last = (*this)[Count() - 1];
        // The texts of a record are adjacent.
        return first.IsLatin1()
                   ? CellView(Bytes(first), static_cast<std::size_t>(Bytes(last) - Bytes(first)) + last.Size())
                   : CellView(first.Wide().data(),
                              static_cast<std::size_t>(last.Wide().data() - first.Wide().data()) + last.Size());
    }
    // Returns the number of cells up to the last that has text.
    int Count() const {
        return bytes_ ? static_cast<int>(record::With(bytes_[0], [&](auto layout) { return layout.Count(bytes_); }))
                      : 0;
    }
    // Whether the row has fewer than 256 characters, all in Latin-1, and is not empty: see ShortRow.
    bool IsShort() const { return bytes_ && bytes_[0] == record::widthCode<std::uint8_t>; }
    // Returns the record; nullptr for a row without text.
    const std::uint8_t* Data() const { return bytes_; }
    // Returns the size of the record in bytes.
    std::size_t Size() const {
        if (!bytes_) {
            return 0;
        }
        if (IsShort()) {
            const std::size_t count = bytes_[1];
            return 2 + count + bytes_[1 + count];
        }
        return record::With(bytes_[0], [&](auto layout) { return layout.Size(bytes_); });
    }

  private:
    static const std::uint8_t* Bytes(const CellView& cell) {
        return reinterpret_cast<const std::uint8_t*>(cell.Latin1().data());
    }

    const std::uint8_t* bytes_;
};

// The cells of a row that IsShort(), for loops over many cells: nearly all rows are short, and the conditions that
// RowView checks for each cell are checked once for the row.
class ShortRow {
  public:
    explicit ShortRow(const RowView& row)
        : count_(row.Data()[1]), ends_(row.Data() + 2), text_(reinterpret_cast<const char*>(ends_) + count_) {}
    // The same as RowView's.
    std::string_view operator[](int col) const {
        const auto at = static_cast<std::size_t>(col);
        if (at >= count_) {
            return {};
        }
        const std::size_t start = at == 0 ? 0 : ends_[at - 1];
        return {text_ + start, ends_[at] - start};
    }

  private:
    std::size_t count_;
    const std::uint8_t* ends_;
    const char* text_;
};

// Calls use(cells) with the row as a ShortRow if it is one, and as it is otherwise.
template <class Use>
auto WithCells(const RowView& row, Use&& use) {
    return row.IsShort() ? use(ShortRow(row)) : use(row);
}

// Nearly all rows are loaded as short texts in Latin-1, whose records are built where they are to be.
struct PackedItem {
    std::size_t size;   // of the record; 0 when no cell has text
    std::size_t cells;  // of the text, empty ones at its end included; at most as many as were asked for
};

// Builds the record of a row of tab-separated cells, at most `cols` of them, in `bytes`. Returns nothing when the row
// has 255 characters or more, or others than Latin-1; the bytes mean nothing then.
std::optional<PackedItem> PackShortItem(TextView item, int cols, std::uint8_t* bytes) noexcept;

// Returns the bytes that PackShortItem may write, whatever it returns.
std::size_t RoomForShortItem(TextView item, int cols) noexcept;

// Builds records in a buffer of its own, one at a time.
class RecordBuilder {
  public:
    // Builds the record of a row of tab-separated cells, at most `cols` of them. Empty when none has text. Valid until
    // the next call.
    std::span<const std::uint8_t> FromItem(TextView item, int cols);
    // The same where PackShortItem has returned nothing.
    std::span<const std::uint8_t> FromOtherItem(TextView item, int cols);
    // Returns the number of cells of the last such row, empty ones at its end included; at most its `cols`.
    int ItemCells() const { return static_cast<int>(itemCells_); }
    // Builds the record of these cells.
    std::span<const std::uint8_t> FromCells(std::span<const CellView> cells);
    std::span<const std::uint8_t> FromTexts(std::span<const TextView> texts);
    // Builds the record of `count` cells of the row, which become those from column 0 on; of fewer where the row ends.
    std::span<const std::uint8_t> FromPart(const RowView& row, int first, int count);
    // Builds the record of the same row with another text in column `col`.
    std::span<const std::uint8_t> WithCell(const RowView& row, int col, TextView text);

  private:
    // Builds a record in Latin-1 where the texts are, in UTF-16 otherwise.
    template <class Number>
    std::span<const std::uint8_t> Build(std::span<const CellView> cells, std::size_t characters);
    template <class Number>
    bool Fill(std::span<const CellView> cells, bool wide, std::size_t size);

    std::vector<std::uint32_t> buffer_;  // in words, for alignment
    std::vector<CellView> cells_;
    std::size_t itemCells_ = 0;
};

// Changes one cell of a short row in Latin-1 within its record, in place.
class ShortCellEdit {
  public:
    // The change is not possible when the old or the new record is not of this kind, or its last cell becomes empty.
    // The text is copied.
    ShortCellEdit(const RowView& row, int col, TextView text);
    bool Possible() const { return possible_; }
    // Returns the size of the record in bytes.
    std::size_t OldSize() const { return 2 + oldCount_ + characters_; }
    std::size_t NewSize() const { return 2 + count_ + characters_ - (end_ - start_) + size_; }
    // Changes the record, which must have room for the new one. Only if the change is possible.
    void Apply(std::uint8_t* record) const noexcept;

  private:
    static constexpr std::size_t longest = 255;

    std::size_t col_;
    std::size_t size_;  // of the text
    std::size_t oldCount_ = 0;
    std::size_t characters_ = 0;  // of the old record
    std::size_t start_ = 0;       // of the cell's old text
    std::size_t end_ = 0;
    std::size_t count_ = 0;
    bool possible_ = false;
    std::uint8_t text_[longest];
};

inline ShortCellEdit::ShortCellEdit(const RowView& row, int col, TextView text)
    : col_(static_cast<std::size_t>(col)), size_(text.size()) {
    const std::uint8_t* const old = row.Data();
    if (!row.IsShort() || size_ > longest) {
        return;
    }
    oldCount_ = old[1];
    const std::uint8_t* const ends = old + 2;
    characters_ = ends[oldCount_ - 1];
    start_ = col_ == 0 ? 0 : ends[std::min(col_, oldCount_) - 1];
    end_ = col_ < oldCount_ ? ends[col_] : characters_;
    count_ = std::max(oldCount_, col_ + 1);
    if (characters_ - (end_ - start_) + size_ > longest || count_ > longest || (size_ == 0 && col_ + 1 == count_)) {
        return;
    }
    possible_ = NarrowTo(text.data(), size_, text_);
}

inline void ShortCellEdit::Apply(std::uint8_t* record) const noexcept {
    std::uint8_t* const ends = record + 2;
    // The texts after the cell are moved first, in either direction.
    std::uint8_t* const text = ends + count_;
    const std::uint8_t* const oldText = ends + oldCount_;
    if (end_ != characters_ && (text != oldText || size_ != end_ - start_)) {
        std::memmove(text + start_ + size_, oldText + end_, characters_ - end_);
    }
    if (text != oldText) {
        std::memmove(text, oldText, start_);
        std::fill(ends + oldCount_, ends + col_, static_cast<std::uint8_t>(characters_));
        record[1] = static_cast<std::uint8_t>(count_);
    }
    std::copy_n(text_, size_, text + start_);
    ends[col_] = static_cast<std::uint8_t>(start_ + size_);
    for (std::size_t i = col_ + 1; i < oldCount_; ++i) {
        ends[i] = static_cast<std::uint8_t>(ends[i] + size_ - (end_ - start_));
    }
}

// Builds the record of a row in which the cells `first` to `last` - 1 are replaced with those of another row, which has
// no more cells than that. Returns its size in `bytes`, which must have room for longestShortRecord, 0 when the row is
// left without text; nullopt where one of the three rows is neither short (RowView::IsShort) nor empty.
inline constexpr std::size_t longestShortRecord = 2 + 2 * 255;
std::optional<std::size_t> JoinShort(const RowView& row, int first, int last, const RowView& cells,
                                     std::uint8_t* bytes);

// Cuts a record to its first cells, in place. Returns the size of the rest, 0 when no text is left.
std::size_t TruncateRecord(std::uint8_t* bytes, int cols) noexcept;

}  // namespace qvx::flexgrid
