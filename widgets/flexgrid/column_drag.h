// A column whose header is dragged to another place.
#pragma once

#include <optional>

#include "widgets/flexgrid/axis.h"

namespace qvx::flexgrid {

struct ColumnDrop {
    int position = -1;  // the number that the column will have; -1 when it would stay where it is
    int line = -1;      // the position along the axis of the gap into which it would go
    friend bool operator==(const ColumnDrop&, const ColumnDrop&) = default;
};

// Returns where a scrolling column goes when it is dropped at a position along the axis: into the nearest gap between
// visible scrolling columns.
ColumnDrop DropOf(const Axis& columns, int col, int position);

// Returns the number of the next shown column in a direction (1 or -1), which the column would change places with; -1
// for a fixed column and without such a neighbour.
int NeighbourOf(const Axis& columns, int col, int step);

// Returns the number that column `col` has after another one, or it itself, has moved.
constexpr int AfterMove(int col, int from, int to) {
    if (col == from) return to;
    if (from < col && col <= to) return col - 1;
    return to <= col && col < from ? col + 1 : col;
}

}  // namespace qvx::flexgrid
