// A cell's text in the store, without a copy. It is valid until the grid is next changed.
#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "common/latin1.h"
#include "common/text.h"

namespace qvx::flexgrid {

// The text of rows that fit Latin-1 is stored as one byte per character (which is also its Unicode number); that of
// other rows as UTF-16.
class CellView {
  public:
    constexpr CellView() = default;
    CellView(const std::uint8_t* bytes, std::size_t size) : data_(bytes), size_(static_cast<std::uint32_t>(size)) {}
    CellView(const char16_t* units, std::size_t size)
        : data_(units), size_(static_cast<std::uint32_t>(size)), wide_(true) {
        assert(size <= UINT32_MAX);
    }

    std::size_t Size() const { return size_; }
    bool Empty() const { return size_ == 0; }
    bool IsLatin1() const { return !wide_; }
    // Bytes of Latin-1; only when IsLatin1().
    std::string_view Latin1() const {
        assert(!wide_);
        return {static_cast<const char*>(data_), size_};
    }
    // UTF-16; only when not IsLatin1().
    TextView Wide() const {
        assert(wide_);
        return {static_cast<const char16_t*>(data_), size_};
    }
    char16_t operator[](std::size_t i) const {
        assert(i < size_);
        return wide_ ? static_cast<const char16_t*>(data_)[i] : static_cast<const std::uint8_t*>(data_)[i];
    }

    Text ToText() const {
        Text text;
        AppendTo(text);
        return text;
    }
    void AppendTo(Text& text) const {
        const std::size_t old = text.size();
        text.resize(old + size_);
        CopyTo(text.data() + old);
    }
    // Writes Size() characters; returns where they end.
    char16_t* CopyTo(char16_t* to) const {
        return wide_ ? std::copy_n(static_cast<const char16_t*>(data_), size_, to)
                     : WidenTo(static_cast<const std::uint8_t*>(data_), size_, to);
    }
    // Returns the text as UTF-16, widened into `scratch` if necessary.
    TextView AsWide(Text& scratch) const {
        if (wide_) {
            return Wide();
        }
        scratch.clear();
        AppendTo(scratch);
        return scratch;
    }

    friend bool operator==(const CellView& a, const CellView& b) {
        if (a.size_ != b.size_) {
            return false;
        }
        if (!a.wide_ && !b.wide_) {
            return a.Latin1() == b.Latin1();
        }
        for (std::size_t i = 0; i < a.size_; ++i) {
            if (a[i] != b[i]) {
                return false;
            }
        }
        return true;
    }
    friend bool operator==(const CellView& a, TextView b) { return a == CellView(b.data(), b.size()); }

  private:
    const void* data_ = nullptr;
    std::uint32_t size_ = 0;  // 32 bits, so that a view fits two registers
    bool wide_ = false;
};

}  // namespace qvx::flexgrid
