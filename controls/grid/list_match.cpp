#include "controls/grid/list_match.h"

#include <algorithm>

#include "common/text_compare.h"

namespace qvx::grid {

Text MatchListEntry(const ListState& list, TextView typed, TextView oldText) {
    const auto entry = [&](int index) { return index >= 0 && index < list.count ? list.entry(index) : Text(); };
    if (list.listIndex != -1) return entry(list.listIndex);
    const int top = list.topIndex;
    if (list.count - top > listRowsInView) return entry(top);
    for (int index = std::max(top, 0); index < list.count; ++index) {
        Text candidate = entry(index);
        if (StartsWithNoCase(candidate, typed)) return candidate;
    }
    return oldText.empty() ? entry(top) : Text(oldText);
}

Text MatchGivenEntry(const ListState& list, TextView text, TextView oldText) {
    ListState chosen = list;
    chosen.topIndex = 0;
    chosen.listIndex = FindExactly(list.count, list.entry, text);
    if (chosen.listIndex < 0) chosen.listIndex = FindBeginningWith(list.count, list.entry, text);
    if (chosen.listIndex < 0 && (text.empty() || !oldText.empty())) return Text(oldText);
    // Nothing was found: a cell without a text gets the first entry.
    if (chosen.listIndex < 0) chosen.count = std::min(chosen.count, listRowsInView);
    return MatchListEntry(chosen, text, oldText);
}

}  // namespace qvx::grid
