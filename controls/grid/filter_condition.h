// A condition for the cells of a column, as people type it into a filter:
//
//     oak          contains the text                  >10  >=10  <10  <=10   numbers, dates or texts in that order
//     a*  *a*  a?  the whole cell, with wildcards     10..20                 from the first to the second
//     =oak         the whole cell is the text         10..  ..20             numbers and dates from it or up to it
//                                                     ""  =                  is empty
//     <>oak        the whole cell is not the text     <>                     is not empty
//     a|b          one of several
//
// A text in quotes, which are doubled within it, means only itself. Upper and lower case make no difference.
#pragma once

#include <cstdint>
#include <list>
#include <optional>
#include <string>
#include <vector>

#include "common/dates.h"
#include "common/text.h"
#include "controls/grid/date_column.h"
#include "controls/grid/search_pattern.h"
#include "widgets/flexgrid/cell_view.h"

namespace qvx::grid {

// What conditions need from the system and the grid.
struct FilterHelp {
    // Appends the key of a text: the bytes of two keys compare as their texts sort for the user.
    void (*appendKey)(TextView text, std::string& key) = nullptr;
    DateSettings dates;
    Text dateFormat;
    bool dotlessI = false;
};

class CellCondition {
  public:
    // `dataType` is that of the column (data_type, or noCleaning): texts are compared as numbers or dates there. In a
    // column without one, a number is compared with the cells that are numbers. Returns nullopt for a text that is no
    // condition, such as "" and ">tomorrow" in a column of numbers.
    static std::optional<CellCondition> Read(TextView text, int dataType, const FilterHelp& help);
    // `scratch` is kept for its memory.
    bool Matches(flexgrid::CellView cell, Text& scratch) const;

  private:
    enum class Kind { contains, wildcards, blank, order };
    enum class Values { numbers, numericTexts, dates, texts };
    struct Bound {
        bool set = false;
        bool inclusive = false;
        double number = 0;  // or a date's
        std::string key;    // of a text
    };
    struct Operand {
        Text text;
        bool quoted = false;
    };
    struct Term {
        Kind kind = Kind::contains;
        bool negated = false;
        SearchPattern pattern;             // what an occurrence contains, or for wildcards the longest text among them
        std::vector<std::uint32_t> units;  // of the wildcards, folded
        Values values = Values::texts;
        Bound low;
        Bound high;
    };

    CellCondition(int dataType, const FilterHelp& help)
        : dataType_(dataType), help_(help), dates_(help.dateFormat, help.dates) {}
    bool AddTerm(TextView sign, const Operand& operand);
    // Whether an operand is a range: of two values, or open at one end where the other is a number or a date.
    bool IsRange(const Operand& operand) const;
    bool AddRange(Term& term, const Operand& operand) const;
    void SetOrder(Term& term, Values values, TextView low, bool inclusive, TextView high) const;
    void SetWildcards(Term& term, TextView text) const;
    void SetBound(Bound& bound, Values values, TextView text, bool inclusive) const;
    SearchPattern PatternOf(TextView text, bool wholeCell) const;
    // The way in which an operand is compared; numbers and dates only if it is one.
    std::optional<Values> ValuesOf(TextView text) const;
    bool MatchesTerm(const Term& term, flexgrid::CellView cell, Text& scratch) const;
    bool IsWithin(const Term& term, flexgrid::CellView cell, Text& scratch) const;

    int dataType_;
    FilterHelp help_;
    DateColumn dates_;
    std::list<Term> terms_;  // which are large, and never moved
};

// Returns the condition that only cells with this text meet.
Text ConditionFor(TextView text);

}  // namespace qvx::grid
