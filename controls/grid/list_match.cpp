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

}  // namespace qvx::grid
