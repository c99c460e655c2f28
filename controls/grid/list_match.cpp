#include "controls/grid/list_match.h"

#include "common/text_compare.h"

namespace qvx::grid {

Text MatchListEntry(const ListState& list, TextView typed, TextView oldText) {
    const int count = static_cast<int>(list.entries.size());
    const auto entry = [&](int index) {
        return index >= 0 && index < count ? list.entries[static_cast<std::size_t>(index)] : Text();
    };
    if (list.listIndex != -1) return entry(list.listIndex);
    const int top = list.topIndex;
    if (count - top > listRowsInView) return entry(top);
    for (int index = top < 0 ? 0 : top; index < count; ++index) {
        const TextView candidate = list.entries[static_cast<std::size_t>(index)];
        if (StartsWithNoCase(candidate, typed)) return Text(candidate);
    }
    return oldText.empty() ? entry(top) : Text(oldText);
}

}  // namespace qvx::grid
