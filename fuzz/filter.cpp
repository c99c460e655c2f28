// The conditions of a filter and the list of them, as users and hosts write them.
#include <algorithm>

#include "common/text_compare.h"
#include "controls/grid/cell_clean.h"
#include "controls/grid/row_filter.h"
#include "fuzz/fuzz_input.h"

namespace qvx {
namespace {

// Wildcards by trying everything.
bool Meets(TextView text, TextView wanted) {
    if (wanted.empty()) return text.empty();
    if (wanted[0] == u'*') return Meets(text, wanted.substr(1)) || (!text.empty() && Meets(text.substr(1), wanted));
    return !text.empty() && (wanted[0] == u'?' || wanted[0] == text[0]) && Meets(text.substr(1), wanted.substr(1));
}

void CheckList(TextView list) {
    const auto items = grid::ReadFilterItems(list);
    if (!items) return;
    const Text written = grid::FilterItemsText(*items);
    Require(grid::ReadFilterItems(written) == items, "a list that is written is read as the same");
}

void CheckCondition(TextView text, int dataType, TextView cellText) {
    grid::FilterHelp help;
    help.dateFormat = u"dd/mm/yyyy";
    help.appendKey = [](TextView from, std::string& key) {
        for (const char16_t c : from) key.append({static_cast<char>(c >> 8), static_cast<char>(c)});
    };
    Text scratch;
    const std::vector<std::uint8_t> bytes(cellText.begin(), cellText.end());
    const flexgrid::CellView wide(cellText.data(), cellText.size());
    const flexgrid::CellView narrow(bytes.data(), bytes.size());
    if (const auto condition = grid::CellCondition::Read(text, dataType, help)) {
        const bool matches = condition->Matches(wide, scratch);
        Require(condition->Matches(narrow, scratch) == matches, "both forms of a text match alike");
    }
    const auto own = grid::CellCondition::Read(grid::ConditionFor(cellText), grid::noCleaning, help);
    Require(own && own->Matches(wide, scratch), "a cell meets the condition for its own text");
    const Text other = u"<>" + grid::ConditionFor(cellText).substr(1);
    const auto opposite = grid::CellCondition::Read(other, grid::noCleaning, help);
    Require(opposite && !opposite->Matches(wide, scratch), "and not the opposite");
}

void CheckWildcards(TextView wanted, TextView cellText) {
    const auto special = [](char16_t c) { return c == u'|' || c == u' ' || c == u'"'; };
    if (wanted.size() > 12 || cellText.size() > 12 || std::any_of(wanted.begin(), wanted.end(), special)) return;
    if (wanted.find_first_of(u"*?") == TextView::npos) return;
    Text scratch;
    const auto condition = grid::CellCondition::Read(u"=" + Text(wanted), grid::noCleaning, {});
    const bool expected = Meets(FoldedText(cellText), FoldedText(wanted));
    Require(condition && condition->Matches({cellText.data(), cellText.size()}, scratch) == expected,
            "wildcards match as all attempts do");
}

}  // namespace

void CheckInput(FuzzInput& input) {
    const int dataType = static_cast<int>(input.Below(4)) - 1;
    const Text cell = input.Latin(input.Below(16));
    const Text text = input.RestLatin();
    CheckList(text);
    CheckCondition(text, dataType, cell);
    CheckWildcards(text, cell);
}

}  // namespace qvx
