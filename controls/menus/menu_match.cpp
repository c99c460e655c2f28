#include "controls/menus/menu_match.h"

#include <algorithm>

#include "common/number_text.h"
#include "controls/menus/menu_text.h"

namespace qvx::menus {

namespace {

constexpr TextView dividingLine = u"-";
// If the product of both lengths is larger than this, the table of the exact search is not worth its memory.
constexpr std::size_t largestTable = std::size_t{1} << 22;

using Objects = std::span<const MenuObject>;
using Entries = std::span<const MenuEntry>;

bool Equal(const MenuObject& object, const MenuEntry& entry) {
    if (!object.visible) return false;
    const bool line = object.caption == dividingLine;
    return entry.separator ? line : SplitMenuText(object.caption).label == SplitMenuText(entry.text).label;
}

// Each entry takes the next object that equals it.
void MatchForward(Objects objects, Entries entries, std::size_t from, std::span<int> result) {
    std::size_t next = 0;
    for (std::size_t e = 0; e < entries.size(); ++e) {
        for (std::size_t o = next; o < objects.size(); ++o) {
            if (!Equal(objects[o], entries[e])) continue;
            result[e] = static_cast<int>(from + o) + 1;
            next = o + 1;
            break;
        }
    }
}

// Finds the longest common subsequence with the usual table: best(o, e) is the number of matches from there on. Where
// there is a choice, the earlier object is taken.
void MatchLongest(Objects objects, Entries entries, std::size_t from, std::span<int> result) {
    const std::size_t width = entries.size() + 1;
    std::vector<std::uint32_t> table((objects.size() + 1) * width);
    const auto best = [&](std::size_t o, std::size_t e) -> std::uint32_t& { return table[o * width + e]; };
    for (std::size_t o = objects.size(); o-- > 0;) {
        for (std::size_t e = entries.size(); e-- > 0;) {
            best(o, e) =
                Equal(objects[o], entries[e]) ? best(o + 1, e + 1) + 1 : std::max(best(o + 1, e), best(o, e + 1));
        }
    }
    std::size_t o = 0;
    for (std::size_t e = 0; o < objects.size() && e < entries.size();) {
        if (Equal(objects[o], entries[e])) {
            result[e++] = static_cast<int>(from + o++) + 1;
        } else if (best(o + 1, e) >= best(o, e + 1)) {
            ++o;
        } else {
            ++e;
        }
    }
}

}  // namespace

Text PictureKey(TextView name, std::optional<std::int32_t> index) {
    Text key(name);
    if (index) key += u"(" + IntegerToText(*index) + u")";
    return key;
}

Text NumberKey(int number) { return IntegerToText(number) + u"_"; }

std::vector<int> MatchMenus(Objects objects, Entries entries) {
    std::vector<int> numbers(entries.size());
    // Mostly everything is where it is expected, and only the part between the equal ends has to be searched.
    std::size_t front = 0;
    while (front < objects.size() && front < entries.size() && Equal(objects[front], entries[front])) {
        numbers[front] = static_cast<int>(front) + 1;
        ++front;
    }
    std::size_t back = 0;
    while (back < objects.size() - front && back < entries.size() - front &&
           Equal(objects[objects.size() - 1 - back], entries[entries.size() - 1 - back])) {
        numbers[entries.size() - 1 - back] = static_cast<int>(objects.size() - back);
        ++back;
    }
    const Objects left = objects.subspan(front, objects.size() - front - back);
    const Entries open = entries.subspan(front, entries.size() - front - back);
    const std::span<int> result = std::span(numbers).subspan(front, open.size());
    const bool exact = left.empty() || open.size() <= largestTable / left.size();
    (exact ? MatchLongest : MatchForward)(left, open, front, result);
    return numbers;
}

}  // namespace qvx::menus
