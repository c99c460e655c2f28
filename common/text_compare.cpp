#include "common/text_compare.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>

#include "common/surrogates.h"

namespace qvx {
namespace {

struct FoldingRun {
    std::uint32_t first;
    std::uint32_t last;
    std::uint8_t step;
    std::int32_t distance;
};

constexpr FoldingRun foldingRuns[] = {
#include "common/case_folding_table.inc"
};

char32_t FoldByRuns(char32_t character) noexcept {
    const auto* const run = std::lower_bound(std::begin(foldingRuns), std::end(foldingRuns), character,
                                             [](const FoldingRun& r, char32_t c) { return r.last < c; });
    if (run == std::end(foldingRuns) || character < run->first || (character - run->first) % run->step != 0)
        return character;
    return static_cast<char32_t>(static_cast<std::int64_t>(character) + run->distance);
}

// Latin-1 has a table of its own, since nearly every comparison needs only that.
const std::array<char16_t, 256> latinFolding = [] {
    std::array<char16_t, 256> table{};
    for (unsigned c = 0; c < table.size(); ++c) table[c] = static_cast<char16_t>(FoldByRuns(c));
    return table;
}();

void Append(Text& text, char32_t character) {
    if (character < 0x10000) {
        text += static_cast<char16_t>(character);
    } else {
        text += static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10));
        text += static_cast<char16_t>(0xDC00 + ((character - 0x10000) & 0x3FF));
    }
}

}  // namespace

char32_t FoldCase(char32_t character) noexcept {
    return character < latinFolding.size() ? latinFolding[character] : FoldByRuns(character);
}

char32_t TakeFolded(TextView& text) noexcept {
    const char16_t c = text[0];
    if (c < latinFolding.size()) {
        text.remove_prefix(1);
        return latinFolding[c];
    }
    if (IsHighSurrogate(c) && text.size() > 1 && IsLowSurrogate(text[1])) {
        const char32_t character = 0x10000 + ((static_cast<char32_t>(c) - 0xD800) << 10) + (text[1] - 0xDC00);
        text.remove_prefix(2);
        return FoldByRuns(character);
    }
    text.remove_prefix(1);
    return FoldByRuns(c);
}

Text FoldedText(TextView text) {
    Text folded;
    folded.reserve(text.size());
    while (!text.empty()) Append(folded, TakeFolded(text));
    return folded;
}

int CompareTextNoCase(TextView first, TextView second) noexcept {
    while (!first.empty() && !second.empty()) {
        const char32_t a = TakeFolded(first);
        const char32_t b = TakeFolded(second);
        if (a != b) return a < b ? -1 : 1;
    }
    return static_cast<int>(!first.empty()) - static_cast<int>(!second.empty());
}

bool EqualNoCase(TextView first, TextView second) noexcept { return CompareTextNoCase(first, second) == 0; }

bool StartsWithNoCase(TextView text, TextView prefix) noexcept {
    while (!prefix.empty()) {
        if (text.empty() || TakeFolded(text) != TakeFolded(prefix)) return false;
    }
    return true;
}

std::size_t FindNoCase(TextView text, TextView wanted) noexcept {
    for (std::size_t at = 0;; ++at) {
        if (StartsWithNoCase(text.substr(at), wanted)) return at;
        if (at == text.size()) return Text::npos;
    }
}

}  // namespace qvx
