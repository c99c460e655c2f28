#include "controls/grid/column_lists.h"

#include "common/text_compare.h"

namespace qvx::grid {

bool IsListedColumn(TextView list, TextView caption) {
    Text item;
    item.reserve(caption.size() + 2);
    item.append(1, u';').append(caption).append(1, u';');
    return ContainsNoCase(list, item);
}

bool HasColumnCode(TextView list, TextView caption, int code) {
    Text item;
    item.reserve(caption.size() + 4);
    item.append(1, u';').append(caption).append(1, u'-').append(1, static_cast<char16_t>(u'0' + code)).append(1, u';');
    return ContainsNoCase(list, item);
}

Text CaptionOf(const flexgrid::Grid& grid, int col) {
    return grid.Rows() == 0 && col >= 0 && col < grid.Cols() ? Text() : grid.TextArray(col);
}

bool IsListedColumn(const flexgrid::Grid& grid, TextView list, int col) {
    return IsListedColumn(list, CaptionOf(grid, col));
}

bool HasColumnCode(const flexgrid::Grid& grid, TextView list, int col, int code) {
    return HasColumnCode(list, CaptionOf(grid, col), code);
}

}  // namespace qvx::grid
