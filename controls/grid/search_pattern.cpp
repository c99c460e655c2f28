#include "controls/grid/search_pattern.h"

#include <algorithm>
#include <cstring>

#include "common/surrogates.h"
#include "common/text_compare.h"

namespace qvx::grid {
namespace {

constexpr char16_t capitalWithDot = 0x130;
constexpr char16_t smallWithoutDot = 0x131;

}  // namespace

[[gnu::cold]] SearchPattern::SearchPattern(TextView text, const SearchOptions& options)
    : matchCase_(options.matchCase), wholeCell_(options.wholeCell), dotlessI_(options.dotlessI) {
    wanted_ = Folded(text);
    if (wanted_.empty()) return;
    hasPairs_ =
        !matchCase_ && std::any_of(wanted_.begin(), wanted_.end(), [](char16_t c) { return IsHighSurrogate(c); });
    const Page& latin = MakePage(0);
    inLatin1_ = std::all_of(wanted_.begin(), wanted_.end(),
                            [&](char16_t c) { return std::find(latin.begin(), latin.end(), c) != latin.end(); });
    int firsts = 0;
    for (std::size_t byte = 0; byte < first_.size(); ++byte) {
        first_[byte] = latin[byte] == wanted_[0];
        if (!first_[byte]) continue;
        ++firsts;
        onlyFirst_ = static_cast<int>(byte);
    }
    if (firsts != 1) onlyFirst_ = -1;
}

// ---- Folding -------------------------------------------------------------------------------------------------------

[[gnu::cold]] Text SearchPattern::Folded(TextView text) const {
    if (matchCase_) return Text(text);
    if (!dotlessI_) return FoldedText(text);
    Text folded;
    while (!text.empty()) {
        const bool isI = text[0] == u'I' || text[0] == capitalWithDot;
        const std::size_t units = text.size() > 1 && IsHighSurrogate(text[0]) && IsLowSurrogate(text[1]) ? 2 : 1;
        folded += isI ? Text(1, Fold(text[0])) : FoldedText(text.substr(0, units));
        text.remove_prefix(units);
    }
    return folded;
}

char16_t SearchPattern::Fold(char16_t unit) const {
    const std::unique_ptr<Page>& page = pages_[unit >> 8];
    return (page ? *page : MakePage(unit >> 8))[unit & 0xFF];
}

[[gnu::cold]] const SearchPattern::Page& SearchPattern::MakePage(std::size_t number) const {
    std::unique_ptr<Page>& page = pages_[number];
    if (page) return *page;
    auto fresh = std::make_unique<Page>();
    for (std::size_t i = 0; i < fresh->size(); ++i) {
        const auto unit = static_cast<char16_t>(number << 8 | i);
        char16_t folded = matchCase_ ? unit : static_cast<char16_t>(FoldCase(unit));
        if (dotlessI_ && !matchCase_ && unit == u'I') folded = smallWithoutDot;
        if (dotlessI_ && !matchCase_ && unit == capitalWithDot) folded = u'i';
        (*fresh)[i] = folded;
    }
    page = std::move(fresh);
    return *page;
}

// ---- Finding -------------------------------------------------------------------------------------------------------

std::size_t SearchPattern::Find(const std::uint8_t* bytes, std::size_t size) const {
    const std::size_t length = wanted_.size();
    if (!inLatin1_ || size < length) return Text::npos;
    const Page& latin = *pages_[0];
    const std::uint8_t* const end = bytes + (size - length) + 1;
    for (const std::uint8_t* at = bytes; at != end; ++at) {
        if (onlyFirst_ >= 0) {
            at = static_cast<const std::uint8_t*>(std::memchr(at, onlyFirst_, static_cast<std::size_t>(end - at)));
            if (!at) return Text::npos;
        } else if (!first_[*at]) {
            continue;
        }
        std::size_t same = 1;
        while (same < length && latin[at[same]] == wanted_[same]) ++same;
        if (same == length) return static_cast<std::size_t>(at - bytes);
    }
    return Text::npos;
}

std::size_t SearchPattern::Find(TextView text) const {
    if (text.size() < wanted_.size()) return Text::npos;
    if (hasPairs_) return Folded(text).find(wanted_);
    const std::size_t last = text.size() - wanted_.size();
    for (std::size_t at = 0; at <= last; ++at) {
        std::size_t same = 0;
        while (same < wanted_.size() && Fold(text[at + same]) == wanted_[same]) ++same;
        if (same == wanted_.size()) return at;
    }
    return Text::npos;
}

std::size_t SearchPattern::Find(const flexgrid::CellView& cell) const {
    if (!cell.IsLatin1()) return Find(cell.Wide());
    return Find(reinterpret_cast<const std::uint8_t*>(cell.Latin1().data()), cell.Size());
}

bool SearchPattern::Matches(const flexgrid::CellView& cell) const {
    if (wanted_.empty() || cell.Size() < wanted_.size()) return false;
    if (wholeCell_ && cell.Size() != wanted_.size()) return false;
    return Find(cell) != Text::npos;
}

bool SearchPattern::MayMatchIn(const flexgrid::RowView& row) const {
    return row.Data() && Find(row.TextFrom(0)) != Text::npos;
}

[[gnu::cold]] Text SearchPattern::Replaced(TextView text, TextView with) const {
    if (wanted_.empty()) return Text(text);
    const Text folded = Folded(text);
    Text replaced;
    std::size_t done = 0;
    for (std::size_t at = 0; (at = folded.find(wanted_, done)) != Text::npos; done = at + wanted_.size())
        replaced.append(text.substr(done, at - done)).append(with);
    return replaced.append(text.substr(done));
}

}  // namespace qvx::grid
