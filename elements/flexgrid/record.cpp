#include "elements/flexgrid/record.h"

#include <algorithm>
#include <limits>
#include <type_traits>

#include "common/run_time_error.h"

namespace qvx::flexgrid {

namespace {

constexpr std::size_t smallest = std::numeric_limits<std::uint8_t>::max();

std::uint8_t* Bytes(std::vector<std::uint32_t>& words, std::size_t size) {
    if (words.size() * 4 < size) {
        words.resize((size + 3) / 4);
    }
    return reinterpret_cast<std::uint8_t*>(words.data());
}

}  // namespace

template <class Number>
std::span<const std::uint8_t> RecordBuilder::Build(std::span<const CellView> cells, bool wide, std::size_t characters) {
    using Layout = record::Layout<Number>;
    const std::size_t start = Layout::TextStart(cells.size(), wide);
    const std::size_t size = start + characters * (wide ? 2 : 1);
    std::uint8_t* bytes = Bytes(buffer_, size);
    auto* numbers = reinterpret_cast<Number*>(bytes);
    numbers[0] = 0;
    bytes[0] = static_cast<std::uint8_t>(record::widthCode<Number> | (wide ? record::wideBit : 0));
    numbers[1] = static_cast<Number>(cells.size());
    std::size_t end = 0;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const CellView& cell = cells[i];
        if (!wide && cell.IsLatin1()) {
            std::copy(cell.Latin1().begin(), cell.Latin1().end(), bytes + start + end);
        } else if (!wide) {
            std::transform(cell.Wide().begin(), cell.Wide().end(), bytes + start + end,
                           [](char16_t unit) { return static_cast<std::uint8_t>(unit); });
        } else {
            auto* units = reinterpret_cast<char16_t*>(bytes + start) + end;
            for (std::size_t c = 0; c < cell.Size(); ++c) {
                units[c] = cell[c];
            }
        }
        end += cell.Size();
        numbers[2 + i] = static_cast<Number>(end);
    }
    return {bytes, size};
}

std::span<const std::uint8_t> RecordBuilder::FromCells(std::span<const CellView> cells) {
    while (!cells.empty() && cells.back().Empty()) {
        cells = cells.first(cells.size() - 1);
    }
    if (cells.empty()) {
        return {};
    }
    std::uint64_t characters = 0;
    unsigned bits = 0;
    for (const CellView& cell : cells) {
        characters += cell.Size();
        if (!cell.IsLatin1()) {
            for (const char16_t unit : cell.Wide()) {
                bits |= unit;
            }
        }
    }
    if (characters > std::numeric_limits<std::int32_t>::max()) {
        throw RunTimeError(errors::outOfMemory, u"Out of memory");
    }
    const bool wide = bits > 0xFF;
    const std::size_t largest = std::max<std::size_t>(static_cast<std::size_t>(characters), cells.size());
    if (largest <= smallest) {
        return Build<std::uint8_t>(cells, wide, static_cast<std::size_t>(characters));
    }
    if (largest <= std::numeric_limits<std::uint16_t>::max()) {
        return Build<std::uint16_t>(cells, wide, static_cast<std::size_t>(characters));
    }
    return Build<std::uint32_t>(cells, wide, static_cast<std::size_t>(characters));
}

std::span<const std::uint8_t> RecordBuilder::FromItem(TextView item, int cols) {
    // Most rows are short and of Latin-1: they are built in one pass over the item, with room for the ends of as many
    // cells as there can be, and the text moved up to the ends that there are.
    const auto most = static_cast<std::size_t>(cols);
    if (most == 0) {
        return {};
    }
    if (item.size() < smallest) {
        std::uint8_t ends[smallest];
        std::uint8_t text[smallest];
        std::size_t count = 0;
        std::size_t used = 0;
        std::size_t textCount = 0;  // cells up to the last that holds text
        unsigned bits = 0;
        const auto closeCell = [&] {
            if (used > 0 && (count == 0 || ends[count - 1] < used)) {
                textCount = count + 1;
            }
            ends[count++] = static_cast<std::uint8_t>(used);
        };
        for (const char16_t unit : item) {
            if (unit == u'\t') {
                closeCell();
                if (count >= most) {
                    break;
                }
            } else {
                bits |= unit;
                text[used++] = static_cast<std::uint8_t>(unit);
            }
        }
        if (count < most) {
            closeCell();
        }
        if (bits <= 0xFF) {
            if (textCount == 0) {
                return {};
            }
            using Layout = record::Layout<std::uint8_t>;
            const std::size_t start = Layout::TextStart(textCount, false);
            std::uint8_t* bytes = Bytes(buffer_, start + used);
            bytes[0] = record::widthCode<std::uint8_t>;
            bytes[1] = static_cast<std::uint8_t>(textCount);
            std::copy(ends, ends + textCount, bytes + 2);
            std::copy(text, text + used, bytes + start);
            return {bytes, start + used};
        }
    }
    cells_.clear();
    while (cells_.size() < most) {
        const std::size_t tab = item.find(u'\t');
        const TextView cell = item.substr(0, tab);
        cells_.emplace_back(cell.data(), cell.size());
        if (tab == TextView::npos) {
            break;
        }
        item.remove_prefix(tab + 1);
    }
    return FromCells(cells_);
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
