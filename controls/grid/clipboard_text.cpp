#include "controls/grid/clipboard_text.h"

#include <algorithm>
#include <bit>
#include <iterator>
#include <utility>

namespace qvx::grid {
namespace {

constexpr char16_t quote = u'"';

// Returns where the next row begins, after one that ends at `at`.
std::size_t BehindRow(TextView text, std::size_t at) {
    if (at == text.size()) return at;
    return at + (text.substr(at).starts_with(u"\r\n") ? 2 : 1);
}

// Returns how many of the lowest sixteen bits are set. std::popcount is a call for processors before SSE4.
constexpr unsigned CountBits(unsigned bits) {
    bits -= bits >> 1 & 0x5555;
    bits = (bits & 0x3333) + (bits >> 2 & 0x3333);
    bits = (bits + (bits >> 4)) & 0x0F0F;
    return (bits + (bits >> 8)) & 0x1F;
}

}  // namespace

// ---- Writing -------------------------------------------------------------------------------------------------------

void AppendCell(Text& to, TextView cell, char16_t separator) {
    const char16_t special[] = {separator, u'\r', u'\n', quote};
    if (cell.find_first_of(TextView(special, std::size(special))) == TextView::npos) {
        to += cell;
        return;
    }
    to += quote;
    for (const char16_t c : cell) {
        if (c == quote) to += quote;
        to += c;
    }
    to += quote;
}

void ClipboardWriter::AddCell(TextView text) {
    if (std::exchange(rowBegun_, true)) text_ += u'\t';
    ++cells_;
    AppendCell(text_, text, u'\t');
}

void ClipboardWriter::EndRow() {
    text_ += u"\r\n";
    rowBegun_ = false;
}

Text ClipboardWriter::Take() {
    if (cells_ == 1) text_.resize(text_.size() - 2);
    return std::move(text_);
}

// ---- Reading -------------------------------------------------------------------------------------------------------

ClipboardCells::ClipboardCells(TextView text, char16_t separator)
    : text_(text), separator_(separator), endsCell_(separator, u'\r', u'\n') {
    std::size_t at = 0;
    do {
        starts_.push_back(at);
        std::size_t cells = 1;
        const std::size_t end = EndOfPlainRow(at, cells);
        if (end < text.size() && text[end] == quote) {
            hasQuotes_ = true;
            at = TakeRow(at);
            cells = cells_.size();
        } else {
            at = BehindRow(text, end);
        }
        cols_ = std::max(cols_, cells);
    } while (at < text.size());
}

// Returns where the row at `at` ends, or the first quote in it, and adds the separators before that to `cells`.
std::size_t ClipboardCells::EndOfPlainRow(std::size_t at, std::size_t& cells) const {
    const ScannedFor stops(u'\r', u'\n', quote);
    const ScannedFor separator(separator_, separator_, separator_);
    for (; at + ScannedFor::width <= text_.size(); at += ScannedFor::width) {
        const unsigned stop = stops.Among(text_.data() + at);
        const unsigned separators = separator.Among(text_.data() + at);
        cells += CountBits(separators & (stop - 1) & ~stop);
        if (stop != 0) return at + static_cast<std::size_t>(std::countr_zero(stop));
    }
    for (; at < text_.size() && !stops.Is(text_[at]); ++at) cells += text_[at] == separator_ ? 1 : 0;
    return at;
}

std::optional<TextView> ClipboardCells::PlainRow(std::size_t row) const {
    const std::size_t begin = starts_[row];
    const std::size_t end = row + 1 < starts_.size() ? starts_[row + 1] : text_.size();
    TextView line = text_.substr(begin, end - begin);
    if (separator_ != u'\t') return std::nullopt;
    if (hasQuotes_ && ScannedFor(quote, quote, quote).Find(line, 0) != line.size()) return std::nullopt;
    if (line.ends_with(u'\n')) line.remove_suffix(1);
    if (line.ends_with(u'\r')) line.remove_suffix(1);
    return line;
}

// Parses the row at `at` and returns where the next row begins.
std::size_t ClipboardCells::TakeRow(std::size_t at) const {
    cells_.clear();
    if (!unquoted_.empty()) unquoted_.clear();
    cells_.push_back(TakeCell(at));
    while (at < text_.size() && text_[at] == separator_) cells_.push_back(TakeCell(++at));
    return BehindRow(text_, at);
}

TextView ClipboardCells::TakeCell(std::size_t& at) const {
    if (TextView cell; at < text_.size() && text_[at] == quote && TakeQuoted(at, cell)) return cell;
    const std::size_t begin = at;
    at = endsCell_.Find(text_, at);
    return text_.substr(begin, at - begin);
}

// The scan for a missing closing quote ends at the next quote that is not doubled, so that no part of the text is
// scanned repeatedly.
bool ClipboardCells::TakeQuoted(std::size_t& at, TextView& cell) const {
    const std::size_t begin = at + 1;
    bool doubled = false;
    std::size_t end = begin;
    for (;; end += 2) {
        end = text_.find(quote, end);
        if (end == TextView::npos) return false;
        if (end + 1 >= text_.size() || text_[end + 1] != quote) break;
        doubled = true;
    }
    if (end + 1 < text_.size() && !endsCell_.Is(text_[end + 1])) return false;
    at = end + 1;
    cell = text_.substr(begin, end - begin);
    if (!doubled) return true;
    Text& own = unquoted_.emplace_back();
    own.reserve(cell.size());
    for (std::size_t i = 0; i < cell.size(); ++i) {
        own += cell[i];
        if (cell[i] == quote) ++i;
    }
    cell = own;
    return true;
}

}  // namespace qvx::grid
