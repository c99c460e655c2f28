#include "widgets/flexgrid/record.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <type_traits>

#include "common/run_time_error.h"

namespace qvx::flexgrid {

namespace {

constexpr std::size_t chunk = 16;  // characters copied at a time
constexpr std::size_t smallest = std::numeric_limits<std::uint8_t>::max();

std::uint8_t* Bytes(std::vector<std::uint32_t>& words, std::size_t size) {
    if (words.size() * 4 < size) {
        words.resize((size + 3) / 4);
    }
    return reinterpret_cast<std::uint8_t*>(words.data());
}

// The parts of a record that is short or that of an empty row.
struct ShortParts {
    explicit ShortParts(const RowView& row) {
        if (const std::uint8_t* const bytes = row.Data()) {
            count = bytes[1];
            ends = bytes + 2;
            text = ends + count;
        }
    }
    // Returns the number of characters of the first cells.
    std::size_t EndOf(std::size_t cells) const {
        return cells == 0 || count == 0 ? 0 : ends[std::min(cells, count) - 1];
    }

    std::size_t count = 0;
    const std::uint8_t* ends = nullptr;
    const std::uint8_t* text = nullptr;
};

}  // namespace

// Returns whether the texts fit the encoding; otherwise the record is not valid.
template <class Number>
bool RecordBuilder::Fill(std::span<const CellView> cells, bool wide, std::size_t size) {
    std::uint8_t* const bytes = Bytes(buffer_, size);
    auto* numbers = reinterpret_cast<Number*>(bytes);
    numbers[0] = 0;
    bytes[0] = static_cast<std::uint8_t>(record::widthCode<Number> | (wide ? record::wideBit : 0));
    numbers[1] = static_cast<Number>(cells.size());
    std::uint8_t* const text = bytes + record::Layout<Number>::TextStart(cells.size(), wide);
    std::size_t end = 0;
    bool fits = true;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const CellView& cell = cells[i];
        if (wide) {
            cell.CopyTo(reinterpret_cast<char16_t*>(text) + end);
        } else if (cell.IsLatin1()) {
            std::copy(cell.Latin1().begin(), cell.Latin1().end(), text + end);
        } else {
            fits = NarrowTo(cell.Wide().data(), cell.Size(), text + end) && fits;
        }
        end += cell.Size();
        numbers[2 + i] = static_cast<Number>(end);
    }
    return fits;
}

template <class Number>
std::span<const std::uint8_t> RecordBuilder::Build(std::span<const CellView> cells, std::size_t characters) {
    std::size_t size = record::Layout<Number>::TextStart(cells.size(), false) + characters;
    if (!Fill<Number>(cells, false, size)) {
        size = record::Layout<Number>::TextStart(cells.size(), true) + characters * sizeof(char16_t);
        Fill<Number>(cells, true, size);
    }
    return {reinterpret_cast<const std::uint8_t*>(buffer_.data()), size};
}

std::span<const std::uint8_t> RecordBuilder::FromCells(std::span<const CellView> cells) {
    while (!cells.empty() && cells.back().Empty()) {
        cells = cells.first(cells.size() - 1);
    }
    if (cells.empty()) {
        return {};
    }
    std::uint64_t characters = 0;
    for (const CellView& cell : cells) {
        characters += cell.Size();
    }
    if (characters > std::numeric_limits<std::int32_t>::max()) {
        throw RunTimeError(errors::outOfMemory, u"Out of memory");
    }
    const std::size_t largest = std::max<std::size_t>(static_cast<std::size_t>(characters), cells.size());
    if (largest <= smallest) {
        return Build<std::uint8_t>(cells, static_cast<std::size_t>(characters));
    }
    if (largest <= std::numeric_limits<std::uint16_t>::max()) {
        return Build<std::uint16_t>(cells, static_cast<std::size_t>(characters));
    }
    return Build<std::uint32_t>(cells, static_cast<std::size_t>(characters));
}

std::span<const std::uint8_t> RecordBuilder::FromTexts(std::span<const TextView> texts) {
    cells_.clear();
    for (const TextView text : texts) {
        cells_.emplace_back(text.data(), text.size());
    }
    return FromCells(cells_);
}

std::span<const std::uint8_t> RecordBuilder::FromPart(const RowView& row, int first, int count) {
    const int last = std::min(row.Count(), first + count);
    if (first == 0 && last == row.Count()) {
        return {row.Data(), row.Size()};
    }
    if (row.IsShort()) {
        const ShortParts parts(row);
        const auto begin = static_cast<std::size_t>(first);
        const std::size_t start = parts.EndOf(begin);
        std::size_t cells = last > first ? static_cast<std::size_t>(last - first) : 0;
        while (cells > 0 && parts.EndOf(begin + cells) == parts.EndOf(begin + cells - 1)) {
            --cells;
        }
        if (cells == 0) {
            return {};
        }
        const std::size_t characters = parts.EndOf(begin + cells) - start;
        std::uint8_t* const bytes = Bytes(buffer_, 2 + cells + characters);
        bytes[0] = record::widthCode<std::uint8_t>;
        bytes[1] = static_cast<std::uint8_t>(cells);
        for (std::size_t i = 0; i < cells; ++i) {
            bytes[2 + i] = static_cast<std::uint8_t>(parts.ends[begin + i] - start);
        }
        std::copy_n(parts.text + start, characters, bytes + 2 + cells);
        return {bytes, 2 + cells + characters};
    }
    cells_.clear();
    for (int col = first; col < last; ++col) {
        cells_.push_back(row[col]);
    }
    return FromCells(cells_);
}

// ---- Rows of tab-separated cells -----------------------------------------------------------------------------------

std::size_t RoomForShortItem(TextView item, int cols) noexcept {
    return 2 + std::min(static_cast<std::size_t>(cols), smallest) + std::min(item.size(), smallest) + chunk;
}

// The text begins after the ends of as many cells as there are columns, which most rows fill, and is moved when there
// are fewer. Every cell is copied in whole chunks, the surplus of which the next cell overwrites.
std::optional<PackedItem> PackShortItem(TextView item, int cols, std::uint8_t* bytes) noexcept {
    if (item.size() >= smallest) {
        return std::nullopt;
    }
    std::uint8_t flat[smallest + chunk];
    MarkBits tabs;
    if (!NarrowMarking(item, u'\t', flat, tabs)) {
        return std::nullopt;
    }
    const std::size_t most = std::min(static_cast<std::size_t>(cols), smallest);
    std::uint8_t* const ends = bytes + 2;
    std::uint8_t* const text = ends + most;
    std::size_t count = 0;
    std::size_t textCount = 0;  // of cells up to the last that has text
    std::size_t used = 0;
    std::size_t start = 0;
    const auto closeCell = [&](std::size_t end) {
        const std::size_t size = end - start;
        std::memcpy(text + used, flat + start, chunk);
        if (size > chunk) {
            std::memcpy(text + used + chunk, flat + start + chunk, size - chunk);
        }
        used += size;
        ends[count++] = static_cast<std::uint8_t>(used);
        textCount = size > 0 ? count : textCount;
        start = end + 1;
    };
    for (std::size_t at = 0; at < item.size(); at += 64) {
        for (std::uint64_t bits = tabs[at / 64]; bits != 0 && count < most; bits &= bits - 1) {
            closeCell(at + static_cast<std::size_t>(std::countr_zero(bits)));
        }
    }
    if (count < most) {
        closeCell(item.size());
    }
    if (textCount == 0) {
        return PackedItem{0, count};
    }
    if (textCount != most) {
        std::memmove(ends + textCount, text, used);
    }
    bytes[0] = record::widthCode<std::uint8_t>;
    bytes[1] = static_cast<std::uint8_t>(textCount);
    return PackedItem{2 + textCount + used, count};
}

std::span<const std::uint8_t> RecordBuilder::FromItem(TextView item, int cols) {
    std::uint8_t* const bytes = Bytes(buffer_, RoomForShortItem(item, cols));
    const auto packed = PackShortItem(item, cols, bytes);
    if (!packed) {
        return FromOtherItem(item, cols);
    }
    itemCells_ = packed->cells;
    return {bytes, packed->size};
}

std::span<const std::uint8_t> RecordBuilder::FromOtherItem(TextView item, int cols) {
    cells_.clear();
    while (cells_.size() < static_cast<std::size_t>(cols)) {
        const std::size_t tab = item.find(u'\t');
        const TextView cell = item.substr(0, tab);
        cells_.emplace_back(cell.data(), cell.size());
        if (tab == TextView::npos) {
            break;
        }
        item.remove_prefix(tab + 1);
    }
    itemCells_ = cells_.size();
    return FromCells(cells_);
}

std::span<const std::uint8_t> RecordBuilder::WithCell(const RowView& row, int col, TextView text) {
    const auto at = static_cast<std::size_t>(col);
    cells_.assign(std::max(static_cast<std::size_t>(row.Count()), at + 1), CellView());
    for (int i = 0; i < row.Count(); ++i) {
        cells_[static_cast<std::size_t>(i)] = row[i];
    }
    cells_[at] = CellView(text.data(), text.size());
    return FromCells(cells_);
}

// ---- Joining -------------------------------------------------------------------------------------------------------

std::optional<std::size_t> JoinShort(const RowView& row, int first, int last, const RowView& cells,
                                     std::uint8_t* bytes) {
    if ((row.Data() && !row.IsShort()) || (cells.Data() && !cells.IsShort())) {
        return std::nullopt;
    }
    const ShortParts old(row);
    const ShortParts fresh(cells);
    const auto begin = static_cast<std::size_t>(first);
    const auto end = static_cast<std::size_t>(last);
    const std::size_t start = old.EndOf(begin);
    const std::size_t cut = old.EndOf(end);
    const std::size_t characters = old.EndOf(old.count);
    const std::size_t middle = start + fresh.EndOf(fresh.count);
    std::size_t count = std::max(old.count, begin + fresh.count);
    if (old.count <= end) {
        count = fresh.count > 0 ? begin + fresh.count : std::min(old.count, begin);
        while (count > 0 && fresh.count == 0 && old.EndOf(count) == old.EndOf(count - 1)) {
            --count;
        }
    }
    if (count == 0) {
        return 0;
    }
    if (count > smallest || middle + characters - cut > smallest) {
        return std::nullopt;
    }
    bytes[0] = record::widthCode<std::uint8_t>;
    bytes[1] = static_cast<std::uint8_t>(count);
    std::uint8_t* const ends = bytes + 2;
    const std::size_t kept = std::min({begin, old.count, count});
    std::copy_n(old.ends, kept, ends);
    const auto fill = [&](std::size_t from, std::size_t to, std::size_t value) {
        for (; from < to; ++from) {
            ends[from] = static_cast<std::uint8_t>(value);
        }
    };
    fill(kept, std::min(begin, count), start);
    for (std::size_t i = 0; i < fresh.count; ++i) {
        ends[begin + i] = static_cast<std::uint8_t>(start + fresh.ends[i]);
    }
    fill(begin + fresh.count, std::min(end, count), middle);
    for (std::size_t i = end; i < count; ++i) {
        ends[i] = static_cast<std::uint8_t>(old.ends[i] - cut + middle);
    }
    std::uint8_t* text = std::copy_n(old.text, start, ends + count);
    text = std::copy_n(fresh.text, middle - start, text);
    std::copy_n(old.text + cut, characters - cut, text);
    return 2 + count + middle + characters - cut;
}

std::size_t TruncateRecord(std::uint8_t* bytes, int cols) noexcept {
    return record::With(bytes[0], [&](auto layout) -> std::size_t {
        const bool wide = (bytes[0] & record::wideBit) != 0;
        const std::size_t before = layout.Count(bytes);
        std::size_t count = std::min(before, static_cast<std::size_t>(cols));
        const auto* ends = layout.Ends(bytes);
        while (count > 0 && ends[count - 1] == (count == 1 ? 0 : ends[count - 2])) {
            --count;
        }
        if (count == 0) {
            return 0;
        }
        const std::size_t characters = ends[count - 1];
        std::memmove(bytes + layout.TextStart(count, wide), bytes + layout.TextStart(before, wide),
                     characters * (wide ? 2 : 1));
        using Number = std::remove_const_t<std::remove_reference_t<decltype(*ends)>>;
        reinterpret_cast<Number*>(bytes)[1] = static_cast<Number>(count);
        return layout.Size(bytes);
    });
}

}  // namespace qvx::flexgrid
