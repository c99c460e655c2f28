#include "controls/grid/clipboard_text.h"

#include <algorithm>
#include <utility>

namespace qvx::grid {
namespace {

constexpr char16_t quote = u'"';

bool EndsCell(char16_t c) { return c == u'\t' || c == u'\r' || c == u'\n'; }

}  // namespace

// ---- Writing -------------------------------------------------------------------------------------------------------

void ClipboardWriter::AddCell(TextView text) {
    if (std::exchange(rowBegun_, true)) text_ += u'\t';
    ++cells_;
    if (text.find_first_of(u"\t\r\n\"") == TextView::npos) {
        text_ += text;
        return;
    }
    text_ += quote;
    for (const char16_t c : text) {
        if (c == quote) text_ += quote;
        text_ += c;
    }
    text_ += quote;
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

ClipboardCells::ClipboardCells(TextView text) {
    std::size_t at = 0;
    std::size_t rowBegin = 0;
    do {
        cells_.push_back(TakeCell(text, at));
        if (at < text.size() && text[at] == u'\t') {
            // There is a cell behind it, be it an empty one at the end of the text.
            ++at;
            if (at < text.size()) continue;
            cells_.emplace_back();
        }
        if (at < text.size()) at += text.substr(at).starts_with(u"\r\n") ? 2 : 1;
        ends_.push_back(cells_.size());
        cols_ = std::max(cols_, cells_.size() - std::exchange(rowBegin, cells_.size()));
    } while (at < text.size());
}

TextView ClipboardCells::TakeCell(TextView text, std::size_t& at) {
    if (TextView cell; TakeQuoted(text, at, cell)) return cell;
    const std::size_t begin = at;
    while (at < text.size() && !EndsCell(text[at])) ++at;
    return text.substr(begin, at - begin);
}

// The scan for the closing quote of a cell that has none goes on no farther than to the next quote that stands alone,
// so that no part of the text is scanned again and again.
bool ClipboardCells::TakeQuoted(TextView text, std::size_t& at, TextView& cell) {
    if (at >= text.size() || text[at] != quote) return false;
    const std::size_t begin = at + 1;
    bool doubled = false;
    std::size_t end = begin;
    for (;; end += 2) {
        end = text.find(quote, end);
        if (end == TextView::npos) return false;
        if (end + 1 >= text.size() || text[end + 1] != quote) break;
        doubled = true;
    }
    if (end + 1 < text.size() && !EndsCell(text[end + 1])) return false;
    at = end + 1;
    cell = text.substr(begin, end - begin);
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
