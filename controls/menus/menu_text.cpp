#include "controls/menus/menu_text.h"

#include <vector>

#include "common/text_compare.h"

namespace qvx::menus {

namespace {

constexpr char16_t mark = u'&';

// Returns a single character in the form in which texts are compared.
char16_t Folded(char16_t character) { return static_cast<char16_t>(FoldCase(character)); }

char16_t FirstCharacter(TextView text) { return text.empty() ? u'\0' : Folded(text.front()); }

std::vector<int> Positions(std::span<const MenuChoice> items, char16_t (*keyOf)(TextView), char16_t typed) {
    std::vector<int> positions;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (keyOf(items[i].text) == typed) positions.push_back(static_cast<int>(i));
    }
    return positions;
}

char16_t InitialWithoutKey(TextView text) { return MenuAccessKey(text) ? u'\0' : FirstCharacter(text); }

}  // namespace

MenuText SplitMenuText(TextView text) {
    const auto split = text.find_first_of(u"\t\b");
    if (split == TextView::npos) return {Text(text), {}};
    return {Text(text.substr(0, split)), Text(text.substr(split + 1))};
}

char16_t MenuAccessKey(TextView text) {
    const Text label = SplitMenuText(text).label;
    char16_t key = 0;
    for (std::size_t i = 0; i + 1 < label.size(); ++i) {
        if (label[i] != mark) continue;
        ++i;
        if (label[i] != mark) key = Folded(label[i]);
    }
    return key;
}

MenuAnswer ChooseByKey(std::span<const MenuChoice> items, char16_t typed) {
    const char16_t wanted = Folded(typed);
    if (!wanted) return {};
    std::vector<int> found = Positions(items, MenuAccessKey, wanted);
    if (found.empty()) found = Positions(items, InitialWithoutKey, wanted);
    if (found.empty()) return {};
    if (found.size() == 1) {
        const bool disabled = items[static_cast<std::size_t>(found.front())].disabled;
        return {disabled ? MenuAnswer::Kind::select : MenuAnswer::Kind::execute, found.front()};
    }
    int selected = -1;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (items[i].selected) selected = static_cast<int>(i);
    }
    for (const int position : found) {
        if (position > selected) return {MenuAnswer::Kind::select, position};
    }
    return {MenuAnswer::Kind::select, found.front()};
}

}  // namespace qvx::menus
