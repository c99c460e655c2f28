// The floor: what the works on data cost at the least. The rows are packed one after the other in a single array, by a
// program that knows them: every row has ten cells in Latin-1, fewer than 256 characters, and the number of rows is
// known before the first one comes. There is no table around them, no check, and no notification.
//
//     row    10 ends of cells, then the text of all cells, without separators
//
// Each work is one pass over as few bytes as possible. Rows that are inserted are packed after the others, and an index
// of their starts is the order.
#pragma once

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "bench/support/workload.h"
#include "common/numeric_reading.h"
#include "common/text.h"

namespace qvx::bench {

class FloorPeer {
  public:
    static const char* Name() { return "Floor"; }

    void Load(std::size_t rows) { LoadFrom(Texts(), rows); }
    void LoadMixed(std::size_t rows) {
        static const std::vector<Text> texts = RowTexts<Text>(MixedRowText);
        LoadFrom(texts, rows);
    }
    double Sum() {
        double sum = 0;
        for (const std::uint32_t start : starts_) sum += NumericValue(CellAt(start, sumColumn));
        return sum;
    }
    std::size_t CountBlank() {
        std::size_t blank = 0;
        for (const std::uint32_t start : starts_) {
            const std::uint8_t* const ends = bytes_.get() + start;
            const std::uint8_t* const text = ends + columnCount;
            std::size_t from = 0;
            for (std::size_t col = 0; col < columnCount; ++col) {
                const std::size_t end = ends[col];
                while (from < end && text[from] == ' ') ++from;
                blank += from == end ? 1 : 0;
                from = end;
            }
        }
        return blank;
    }
    void InsertAtTop(std::size_t count) { InsertBlockAtTop(count); }
    void InsertBlockAtTop(std::size_t count) {
        const std::size_t needed = used_ + count * longestRow + chunk;
        if (room_ < needed) {
            room_ = needed;
            bytes_.reset(static_cast<std::uint8_t*>(std::realloc(bytes_.release(), room_)));
        }
        std::vector<std::uint32_t> fresh;
        fresh.reserve(count);
        for (std::size_t i = 0; i < count; ++i) fresh.push_back(Pack(i));
        starts_.insert(starts_.begin(), fresh.begin(), fresh.end());
    }
    // Moves the rows that stay together.
    void RemoveEverySecond() {
        auto fresh = Allocate(used_);
        std::size_t kept = 0;
        std::size_t used = 0;
        for (std::size_t row = 0; row < starts_.size(); row += 2) {
            const std::size_t size = SizeAt(starts_[row]);
            std::memcpy(fresh.get() + used, bytes_.get() + starts_[row], size);
            starts_[kept++] = static_cast<std::uint32_t>(used);
            used += size;
        }
        starts_.erase(starts_.begin() + static_cast<std::ptrdiff_t>(kept), starts_.end());
        bytes_ = std::move(fresh);
        used_ = room_ = used;
    }
    std::size_t Rows() { return starts_.size(); }
    std::string_view CellView(std::size_t row, std::size_t col) const { return CellAt(starts_[row], col); }
    std::string Cell(std::size_t row, std::size_t col) { return std::string(CellView(row, col)); }

  private:
    static constexpr std::size_t chunk = 16;
    static constexpr std::size_t longestRow = 128;

    struct Free {
        void operator()(std::uint8_t* memory) const noexcept { std::free(memory); }
    };
    using Memory = std::unique_ptr<std::uint8_t, Free>;

    static Memory Allocate(std::size_t size) { return Memory(static_cast<std::uint8_t*>(std::malloc(size))); }

    static const std::vector<Text>& Texts() {
        static const std::vector<Text> texts = RowTexts<Text>();
        return texts;
    }

    std::size_t SizeAt(std::size_t start) const { return columnCount + bytes_.get()[start + columnCount - 1]; }
    std::string_view CellAt(std::size_t start, std::size_t col) const {
        const std::uint8_t* const ends = bytes_.get() + start;
        const std::size_t from = col == 0 ? 0 : ends[col - 1];
        return {reinterpret_cast<const char*>(ends) + columnCount + from, ends[col] - from};
    }

    void LoadFrom(const std::vector<Text>& texts, std::size_t rows) {
        starts_.reserve(rows);
        bytes_ = Allocate(rows * longestRow + chunk);
        for (std::size_t i = 0; i < rows; ++i) starts_.push_back(Pack(texts[i % distinctRows]));
        // Pages that no row has reached were never touched.
        room_ = used_;
        bytes_.reset(static_cast<std::uint8_t*>(std::realloc(bytes_.release(), used_)));
    }

    // Packs a text after the last row; returns where the row starts.
    std::uint32_t Pack(std::size_t i) { return Pack(Texts()[i % distinctRows]); }
    std::uint32_t Pack(const Text& item) {
        std::uint8_t* const ends = bytes_.get() + used_;
        std::uint8_t* const text = ends + columnCount;
        std::size_t col = 0;
        std::size_t out = 0;
        std::size_t at = 0;
#ifdef __SSE2__
        for (; at + chunk <= item.size(); at += chunk) {
            const auto* units = reinterpret_cast<const __m128i*>(item.data() + at);
            const __m128i narrow = _mm_packus_epi16(_mm_loadu_si128(units), _mm_loadu_si128(units + 1));
            auto tabs = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(narrow, _mm_set1_epi8('\t'))));
            alignas(chunk) std::uint8_t bytes[2 * chunk];
            _mm_store_si128(reinterpret_cast<__m128i*>(bytes), narrow);
            std::size_t start = 0;
            for (; tabs != 0; tabs &= tabs - 1) {
                const auto tab = static_cast<std::size_t>(std::countr_zero(tabs));
                std::memcpy(text + out, bytes + start, chunk);
                out += tab - start;
                start = tab + 1;
                ends[col++] = static_cast<std::uint8_t>(out);
            }
            std::memcpy(text + out, bytes + start, chunk);
            out += chunk - start;
        }
#endif
        for (; at < item.size(); ++at) {
            if (item[at] == u'\t') {
                ends[col++] = static_cast<std::uint8_t>(out);
            } else {
                text[out++] = static_cast<std::uint8_t>(item[at]);
            }
        }
        ends[col] = static_cast<std::uint8_t>(out);
        const auto start = static_cast<std::uint32_t>(used_);
        used_ += columnCount + out;
        return start;
    }

    Memory bytes_;
    std::size_t used_ = 0;
    std::size_t room_ = 0;
    std::vector<std::uint32_t> starts_;
};

}  // namespace qvx::bench
