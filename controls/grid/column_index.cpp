#include "controls/grid/column_index.h"

#include "common/keyed_collection.h"
#include "common/number_text.h"

namespace qvx::grid {

ColumnIndex RefreshColIndex(const flexgrid::Grid& grid) {
    ColumnIndex index;
    KeyedCollection<int> taken;
    for (int col = 0; col < grid.Cols(); ++col) {
        const Text caption = grid.TextArray(col);
        Text key = caption;
        for (int suffix = 1; taken.Contains(key); ++suffix) key = caption + IntegerToText(suffix);
        taken.Add(col, key);
        index.stringFormat.append(u"[").append(key).append(u"],");
        index.entries.emplace_back(std::move(key), col);
    }
    if (!index.stringFormat.empty()) index.stringFormat.pop_back();
    return index;
}

}  // namespace qvx::grid
