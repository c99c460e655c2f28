// The grid as assistive programs see it: a table of rows of cells, headers among them. What each part is called, where
// it lies, what it can do and which part comes next; an object of the system's accessibility interface only passes it
// on. Nothing is kept for a part, so a grid of any size costs nothing until a part is asked about.
#pragma once

#include <cstdint>
#include <optional>

#include "common/geometry.h"
#include "common/text.h"
#include "widgets/flexgrid/grid.h"
#include "widgets/flexgrid/navigation.h"
#include "widgets/flexgrid/view.h"

namespace qvx::flexgrid {

// Roles, states and flags as the system numbers them.
namespace accessible_role {
constexpr long table = 0x18;
constexpr long columnHeader = 0x19;
constexpr long rowHeader = 0x1A;
constexpr long row = 0x1C;
constexpr long cell = 0x1D;
}  // namespace accessible_role

namespace accessible_state {
constexpr long unavailable = 0x1;
constexpr long selected = 0x2;
constexpr long focused = 0x4;
constexpr long readOnly = 0x40;
constexpr long invisible = 0x8000;   // hidden
constexpr long offscreen = 0x10000;  // scrolled out of the window
constexpr long focusable = 0x100000;
constexpr long selectable = 0x200000;
constexpr long multiSelectable = 0x1000000;
constexpr long extSelectable = 0x2000000;
}  // namespace accessible_state

namespace accessible_select {
constexpr long takeFocus = 1;
constexpr long takeSelection = 2;
constexpr long extendSelection = 4;
}  // namespace accessible_select

enum class AccessibleStep {
    up = 1,
    down = 2,
    left = 3,
    right = 4,
    next = 5,
    previous = 6,
    firstChild = 7,
    lastChild = 8
};

// The whole grid, a row of it, or a cell. Parts go by number: after rows came or went a number means another row.
struct AccessiblePart {
    int row = -1;  // -1: the grid
    int col = -1;  // -1: the whole row
    bool IsGrid() const { return row < 0; }
    bool IsRow() const { return row >= 0 && col < 0; }
    bool IsCell() const { return row >= 0 && col >= 0; }
    friend bool operator==(const AccessiblePart&, const AccessiblePart&) = default;
};

// Whether the grid (still) has such a part.
bool HasPart(const Grid& grid, const AccessiblePart& part);
bool IsHeader(const Grid& grid, const AccessiblePart& part);

// Children are numbered from 1: the rows of the grid, the cells of a row. The grid knows its cells by negative numbers
// as well, so that one event can name a cell.
int ChildCount(const Grid& grid, const AccessiblePart& part);
std::optional<AccessiblePart> ChildOf(const Grid& grid, const AccessiblePart& part, int id);
// The number of a part as a child of the grid; 0 for the grid itself.
int IdInGrid(const Grid& grid, const AccessiblePart& part);

// A column's header texts from top to bottom, or "Column 2" when it has none.
Text ColumnName(const Grid& grid, int col);
// A row's header texts, or "Row 2" when it has none; a number alone becomes "Row 2" as well.
Text RowName(const Grid& grid, int row);
// A cell is called by its column and its row, a header by its own text. The grid has no name of its own: "".
Text NameOf(const Grid& grid, const AccessiblePart& part);
// A cell's text, a row's texts in the columns that are not hidden; nothing for headers and the grid.
std::optional<Text> ValueOf(const Grid& grid, const AccessiblePart& part);
long RoleOf(const Grid& grid, const AccessiblePart& part);
// `editable`: the user may change the cell.
long StateOf(const Grid& grid, const View& view, const AccessiblePart& part, bool editable);
// Pixels of the window's client area. What shows only in part ends at the window's edge; what does not show lies where
// scrolling would bring it from.
Rect AreaOf(const Grid& grid, const View& view, const AccessiblePart& part);
// The child at a point, the part itself where there is none, nothing outside of it.
std::optional<AccessiblePart> PartAt(const Grid& grid, const View& view, const AccessiblePart& part, Point point);
// Up, down, left and right go as the eye does, past what is hidden; next and previous go by number among siblings.
std::optional<AccessiblePart> StepFrom(const Grid& grid, const AccessiblePart& part, AccessibleStep step);

// Cursor and selection after a program has asked for a part to be focused or selected (accessible_select's flags).
// Nothing when it cannot be: headers and rows are selected as a press on a header does it, and no part can be added to
// or taken from a selection, which is one rectangle.
std::optional<Cursor> SelectPart(const Grid& grid, const View& view, const AccessiblePart& part, long flags);

// What is selected, in order: whole rows where rows are what is selected, otherwise cells.
struct SelectedParts {
    CellRange range;
    bool rows = false;
    std::int64_t Count() const;
    AccessiblePart At(std::int64_t index) const;
};
// Within a row: its selected cells, or none; of the grid, all.
SelectedParts SelectedIn(const Grid& grid, const AccessiblePart& part);

}  // namespace qvx::flexgrid
