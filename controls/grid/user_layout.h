// What the user has made of a grid's columns, as one string that the host keeps for the next time: their order and
// widths, and what the rows are sorted and filtered by.
//
//     1|No=480|Qty=960|Name=1440|*sort=;Name-0;|*filter=...
//
// Columns are named by their captions, so that the string outlives changes of the form. In captions and values, "%",
// "|", "=" and "*" are written as "%" and their code in two hexadecimal digits. Parts with an unknown name are ignored.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "common/text.h"
#include "controls/grid/control_state.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

struct UserLayout {
    struct Column {
        Text caption;
        int width = 0;  // twips
        friend bool operator==(const Column&, const Column&) = default;
    };
    std::vector<Column> columns;  // from left to right
    Text sort;                    // as SortedBy
    Text filter;                  // as Filter
    friend bool operator==(const UserLayout&, const UserLayout&) = default;
};

Text WriteLayout(const UserLayout& layout);
// Returns nothing for a text of another form.
std::optional<UserLayout> ReadLayout(TextView text);

// Returns the columns of a grid as they are.
std::vector<UserLayout::Column> LayoutColumns(const flexgrid::Grid& grid);

// Gives columns their widths, except for invisible ones, and puts those from `firstMovable` on into the order:
// move(from, to) is called for each that moves. Of several columns with the same caption, the first one gets what is
// first; columns that the layout does not name follow the others.
void ApplyLayoutColumns(flexgrid::Grid& grid, const ControlState& state, const std::vector<UserLayout::Column>& columns,
                        int firstMovable, const std::function<void(int from, int to)>& move);

}  // namespace qvx::grid
