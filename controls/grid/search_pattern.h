// A text that is searched for: which cells match it, and what replacing it makes of them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "common/text.h"
#include "widgets/flexgrid/cell_view.h"
#include "widgets/flexgrid/record.h"

namespace qvx::grid {

struct SearchOptions {
    static constexpr int allColumns = -1;

    bool matchCase = false;
    bool wholeCell = false;
    // Of the user's locale: "I" is the capital of a letter without a dot, as in Turkish.
    bool dotlessI = false;
    int column = allColumns;  // the only one to be searched
    friend bool operator==(const SearchOptions&, const SearchOptions&) = default;
};

// Upper and lower case are compared by simple case folding (text_compare.h), which never changes the number of UTF-16
// units: an occurrence is always as long as the text.
class SearchPattern {
  public:
    SearchPattern() = default;  // matches nothing, and so does the empty text
    SearchPattern(TextView text, const SearchOptions& options);

    bool Empty() const { return wanted_.empty(); }
    bool Matches(const flexgrid::CellView& cell) const;
    // Whether a cell of the row may match; most rows of most searches are skipped by this.
    bool MayMatchIn(const flexgrid::RowView& row) const;
    // Returns the text with every occurrence replaced, from left to right.
    Text Replaced(TextView text, TextView with) const;
    // Returns the text as it is compared; it has the same number of units.
    Text Folded(TextView text) const;

  private:
    using Page = std::array<char16_t, 256>;

    char16_t Fold(char16_t unit) const;
    const Page& MakePage(std::size_t number) const;
    std::size_t Find(const std::uint8_t* bytes, std::size_t size) const;
    std::size_t Find(TextView text) const;
    std::size_t Find(const flexgrid::CellView& cell) const;

    Text wanted_;  // folded
    bool matchCase_ = false;
    bool wholeCell_ = false;
    bool dotlessI_ = false;
    bool hasPairs_ = false;          // a letter takes two units
    bool inLatin1_ = false;          // a text of Latin-1 may match
    int onlyFirst_ = -1;             // the byte that an occurrence in Latin-1 begins with, if it is the only one
    std::array<bool, 256> first_{};  // the bytes that an occurrence in Latin-1 begins with
    // Folded units by their high byte, made when a text first has one: looking each letter up would take too long.
    mutable std::array<std::unique_ptr<Page>, 256> pages_;
};

}  // namespace qvx::grid
