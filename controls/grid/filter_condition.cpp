#include "controls/grid/filter_condition.h"

#include <algorithm>
#include <utility>

#include "common/surrogates.h"
#include "common/text_compare.h"
#include "controls/grid/cell_reading.h"
#include "controls/grid/column_lists.h"

namespace qvx::grid {
namespace {

// Beyond the units of UTF-16.
constexpr std::uint32_t anyText = 0x10000;
constexpr std::uint32_t anyCharacter = 0x10001;

constexpr TextView wildcards = u"*?";

TextView WithoutBlanks(TextView text) {
    const auto first = text.find_first_not_of(u' ');
    if (first == TextView::npos) return {};
    return text.substr(first, text.find_last_not_of(u' ') - first + 1);
}

// Removes the sign at the beginning.
TextView TakeSign(TextView& text) {
    for (const TextView sign :
         {TextView(u"<>"), TextView(u">="), TextView(u"<="), TextView(u"="), TextView(u">"), TextView(u"<")}) {
        if (!text.starts_with(sign)) continue;
        text.remove_prefix(sign.size());
        return sign;
    }
    return {};
}

// Removes a text in quotes that is followed by the end or another alternative.
std::optional<Text> TakeQuoted(TextView& text) {
    if (!text.starts_with(u'"')) return std::nullopt;
    Text quoted;
    for (std::size_t i = 1; i < text.size(); ++i) {
        if (text[i] == u'"') {
            if (i + 1 == text.size() || text[i + 1] != u'"') {
                const TextView rest = WithoutBlanks(text.substr(i + 1));
                if (!rest.empty() && rest.front() != u'|') return std::nullopt;
                text = rest;
                return quoted;
            }
            ++i;
        }
        quoted += text[i];
    }
    return std::nullopt;
}

// Whether all of the text meets the wildcards. Each star that is reached makes up for those before it.
bool MeetsWildcards(TextView text, const std::vector<std::uint32_t>& units) {
    std::size_t at = 0;
    std::size_t unit = 0;
    std::size_t starUnit = units.size();
    std::size_t starAt = 0;
    while (at < text.size()) {
        if (unit < units.size() && units[unit] == anyText) {
            starUnit = unit++;
            starAt = at;
        } else if (unit < units.size() && units[unit] == anyCharacter) {
            const bool pair = IsHighSurrogate(text[at]) && at + 1 < text.size() && IsLowSurrogate(text[at + 1]);
            at += pair ? 2 : 1;
            ++unit;
        } else if (unit < units.size() && units[unit] == text[at]) {
            ++at;
            ++unit;
        } else if (starUnit < units.size()) {
            unit = starUnit + 1;
            at = ++starAt;
        } else {
            return false;
        }
    }
    while (unit < units.size() && units[unit] == anyText) ++unit;
    return unit == units.size();
}

}  // namespace

// ---- Reading -------------------------------------------------------------------------------------------------------

[[gnu::cold]] std::optional<CellCondition> CellCondition::Read(TextView text, int dataType, const FilterHelp& help) {
    CellCondition condition(dataType, help);
    text = WithoutBlanks(text);
    while (!text.empty()) {
        const TextView sign = TakeSign(text);
        text = WithoutBlanks(text);
        Operand operand;
        if (auto quoted = TakeQuoted(text)) {
            operand = {std::move(*quoted), true};
        } else {
            const TextView plain = text.substr(0, text.find(u'|'));
            text.remove_prefix(plain.size());
            operand.text = WithoutBlanks(plain);
        }
        // What is between two bars, or after the last one, may still be empty.
        const bool nothing = sign.empty() && operand.text.empty() && !operand.quoted;
        if (!nothing && !condition.AddTerm(sign, operand)) return std::nullopt;
        if (!text.empty()) text = WithoutBlanks(text.substr(1));
    }
    return condition.terms_.empty() ? std::nullopt : std::optional(std::move(condition));
}

[[gnu::cold]] bool CellCondition::AddTerm(TextView sign, const Operand& operand) {
    Term& term = terms_.emplace_back();
    const TextView text = operand.text;
    const bool same = sign == u"=" || sign == u"<>";
    term.negated = sign == u"<>";
    if (text.empty()) {
        if (!sign.empty() && !same) return false;
        term.kind = Kind::blank;
    } else if (!sign.empty() && !same) {
        const auto values = ValuesOf(text);
        const bool inclusive = sign.size() == 2;
        if (!values) return false;
        const bool below = sign.front() == u'<';
        SetOrder(term, *values, below ? TextView() : text, inclusive, below ? text : TextView());
    } else if (sign.empty() && IsRange(operand)) {
        if (!AddRange(term, operand)) return false;
    } else if (!operand.quoted && text.find_first_of(wildcards) != TextView::npos) {
        SetWildcards(term, text);
    } else if (sign.empty()) {
        term.pattern = PatternOf(text, false);
    } else {
        const auto values = operand.quoted || dataType_ < 0 ? std::nullopt : ValuesOf(text);
        if (values) {
            SetOrder(term, *values, text, true, text);
        } else {
            term.pattern = PatternOf(text, true);
        }
    }
    return true;
}

[[gnu::cold]] bool CellCondition::IsRange(const Operand& operand) const {
    const TextView text = operand.text;
    const auto dots = text.find(u"..");
    if (operand.quoted || dots == TextView::npos) return false;
    if (text.front() != u'.' && text.back() != u'.') return true;
    const TextView other = WithoutBlanks(dots == 0 ? text.substr(2) : text.substr(0, dots));
    if (other.empty() || (dots != 0 && dots + 2 != text.size())) return false;
    return ValuesOf(other).value_or(Values::texts) != Values::texts;
}

[[gnu::cold]] bool CellCondition::AddRange(Term& term, const Operand& operand) const {
    const TextView text = operand.text;
    const auto dots = text.find(u"..");
    const TextView low = WithoutBlanks(text.substr(0, dots));
    const TextView high = WithoutBlanks(text.substr(dots + 2));
    const auto lowValues = ValuesOf(low.empty() ? high : low);
    const auto highValues = ValuesOf(high.empty() ? low : high);
    if (!lowValues || !highValues) return false;
    SetOrder(term, lowValues == highValues ? *lowValues : Values::texts, low, true, high);
    return true;
}

[[gnu::cold]] std::optional<CellCondition::Values> CellCondition::ValuesOf(TextView text) const {
    if (dataType_ == data_type::date) return dates_.Read(text) ? std::optional(Values::dates) : std::nullopt;
    if (dataType_ >= 0) return ReadNumeric(text) ? std::optional(Values::numbers) : std::nullopt;
    return ReadNumeric(text) ? Values::numericTexts : Values::texts;
}

[[gnu::cold]] void CellCondition::SetOrder(Term& term, Values values, TextView low, bool inclusive,
                                           TextView high) const {
    term.kind = Kind::order;
    term.values = values;
    SetBound(term.low, values, low, inclusive);
    SetBound(term.high, values, high, inclusive);
    // Whoever types the larger one first means the same.
    const bool swapped = values == Values::texts ? term.low.key > term.high.key : term.low.number > term.high.number;
    if (term.low.set && term.high.set && swapped) std::swap(term.low, term.high);
}

[[gnu::cold]] void CellCondition::SetBound(Bound& bound, Values values, TextView text, bool inclusive) const {
    if (text.empty()) return;
    bound.set = true;
    bound.inclusive = inclusive;
    if (values == Values::texts) {
        help_.appendKey(FoldedText(text), bound.key);
    } else if (values == Values::dates) {
        bound.number = static_cast<double>(DateColumn::RankOf(*dates_.Read(text)));
    } else {
        bound.number = *ReadNumeric(text);
    }
}

[[gnu::cold]] void CellCondition::SetWildcards(Term& term, TextView text) const {
    term.kind = Kind::wildcards;
    // Folding keeps the number of units, and what is in the place of a wildcard.
    const Text folded = PatternOf(text, false).Folded(text);
    TextView longest;
    for (std::size_t begin = 0, i = 0; i < folded.size(); ++i) {
        const bool wildcard = wildcards.find(folded[i]) != TextView::npos;
        term.units.push_back(!wildcard ? folded[i] : folded[i] == u'*' ? anyText : anyCharacter);
        if (wildcard) begin = i + 1;
        if (i + 1 - begin > longest.size() && !wildcard) longest = text.substr(begin, i + 1 - begin);
    }
    term.pattern = PatternOf(longest, false);
}

[[gnu::cold]] SearchPattern CellCondition::PatternOf(TextView text, bool wholeCell) const {
    SearchOptions options;
    options.wholeCell = wholeCell;
    options.dotlessI = help_.dotlessI;
    return SearchPattern(text, options);
}

// ---- Matching ------------------------------------------------------------------------------------------------------

bool CellCondition::Matches(flexgrid::CellView cell, Text& scratch) const {
    for (const Term& term : terms_)
        if (MatchesTerm(term, cell, scratch) != term.negated) return true;
    return false;
}

bool CellCondition::MatchesTerm(const Term& term, flexgrid::CellView cell, Text& scratch) const {
    switch (term.kind) {
        case Kind::contains:
            return term.pattern.Matches(cell);
        case Kind::wildcards:
            if (!term.pattern.Empty() && !term.pattern.Matches(cell)) return false;
            return MeetsWildcards(term.pattern.Folded(cell.AsWide(scratch)), term.units);
        case Kind::blank:
            return IsBlank(cell);
        case Kind::order:
            return !IsBlank(cell) && IsWithin(term, cell, scratch);
    }
    return false;
}

bool CellCondition::IsWithin(const Term& term, flexgrid::CellView cell, Text& scratch) const {
    const auto between = [&](const auto& value, const auto& low, const auto& high) {
        if (term.low.set && !(term.low.inclusive ? value >= low : value > low)) return false;
        return !term.high.set || (term.high.inclusive ? value <= high : value < high);
    };
    double number = 0;
    switch (term.values) {
        case Values::numbers:
            number = NumberIn(cell);
            break;
        case Values::numericTexts: {
            const auto read = ReadNumeric(cell.AsWide(scratch));
            if (!read) return false;
            number = *read;
            break;
        }
        case Values::dates: {
            const auto date = dates_.Read(cell.AsWide(scratch));
            if (!date) return false;
            number = static_cast<double>(DateColumn::RankOf(*date));
            break;
        }
        case Values::texts: {
            std::string key;
            help_.appendKey(FoldedText(cell.AsWide(scratch)), key);
            return between(key, term.low.key, term.high.key);
        }
    }
    return between(number, term.low.number, term.high.number);
}

[[gnu::cold]] Text ConditionFor(TextView text) {
    if (IsBlank(text)) return u"=";
    const bool plain = WithoutBlanks(text) == text && text.find_first_of(u"*?|\"") == TextView::npos;
    if (plain) return u"=" + Text(text);
    Text condition = u"=\"";
    for (const char16_t c : text) condition.append(c == u'"' ? 2 : 1, c);
    return condition + u"\"";
}

}  // namespace qvx::grid
