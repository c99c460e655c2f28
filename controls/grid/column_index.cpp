#include "controls/grid/column_index.h"

#include "common/keyed_collection.h"
#include "common/number_text.h"
#include "controls/grid/column_lists.h"

namespace qvx::grid {

[[gnu::cold]] ColumnIndex RefreshColIndex(const flexgrid::Grid& grid) {
    ColumnIndex index;
    KeyedCollection<int> taken;
    // The last number tried after each caption. No key is ever removed, so all up to it stay taken; starting at 1 each
    // time would take quadratic time for many equal captions.
    KeyedCollection<int> lastTried;
    for (int col = 0; col < grid.Cols(); ++col) {
        const Text caption = CaptionOf(grid, col);
        Text key = caption;
        if (taken.Contains(key)) {
            if (!lastTried.Contains(caption)) lastTried.Add(0, caption);
            int& suffix = lastTried.At(TextView(caption));
            do key = caption + IntegerToText(++suffix);
            while (taken.Contains(key));
        }
        taken.Add(col, key);
        index.stringFormat.append(u"[").append(key).append(u"],");
        index.entries.emplace_back(std::move(key), col);
    }
    if (!index.stringFormat.empty()) index.stringFormat.pop_back();
    return index;
}

}  // namespace qvx::grid
