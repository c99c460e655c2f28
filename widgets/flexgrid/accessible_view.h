// The grid as assistive programs see it: a table of rows of cells, including headers. These rules decide the name, the
// position and the actions of each part, and which part comes next; an object of the system's accessibility interface
// only passes the results on. Nothing is stored for a part, so a grid of any size costs nothing until a client asks
// about a part.
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

// The whole grid, a row of it, or a cell. Parts are identified by number: after rows have been inserted or removed, a
// number means another row.
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

// Children are numbered from 1: the rows of the grid, the cells of a row. The grid also identifies its cells by
// negative numbers, so that one event can name a cell.
int ChildCount(const Grid& grid, const AccessiblePart& part);
std::optional<AccessiblePart> ChildOf(const Grid& grid, const AccessiblePart& part, int id);
// Returns the number of a part as a child of the grid; 0 for the grid itself.
int IdInGrid(const Grid& grid, const AccessiblePart& part);

// Returns a column's header texts from top to bottom, or "Column 2" when it has none.
Text ColumnName(const Grid& grid, int col);
// Returns a row's header texts, or "Row 2" when it has none or only a number.
Text RowName(const Grid& grid, int row);
// A cell is named by its column and its row, a header by its own text. The grid has no name of its own: "".
Text NameOf(const Grid& grid, const AccessiblePart& part);
// Returns a cell's text, or a row's texts in the columns that are not hidden; nullopt for headers and the grid.
std::optional<Text> ValueOf(const Grid& grid, const AccessiblePart& part);
long RoleOf(const Grid& grid, const AccessiblePart& part);
// `editable`: the user may change the cell.
long StateOf(const Grid& grid, const View& view, const AccessiblePart& part, bool editable);
// Returns the area in pixels of the window's client area. A part that is partly visible ends at the window's edge; one
// that is not visible is where scrolling would bring it from.
Rect AreaOf(const Grid& grid, const View& view, const AccessiblePart& part);
// Returns the child at a point, the part itself where there is no child, nullopt outside of it.
std::optional<AccessiblePart> PartAt(const Grid& grid, const View& view, const AccessiblePart& part, Point point);
// Up, down, left and right are the directions on the screen and skip hidden items; next and previous follow the numbers
// of siblings.
std::optional<AccessiblePart> StepFrom(const Grid& grid, const AccessiblePart& part, AccessibleStep step);

// Returns cursor and selection after a program has asked for a part to be focused or selected (accessible_select's
// flags), or nullopt when that is impossible: headers and rows are selected as a press on a header selects them, and no
// part can be added to or removed from a selection, which is one rectangle.
std::optional<Cursor> SelectPart(const Grid& grid, const View& view, const AccessiblePart& part, long flags);

// The selected parts, in order: whole rows where rows are selected, otherwise cells.
struct SelectedParts {
    CellRange range;
    bool rows = false;
    std::int64_t Count() const;
    AccessiblePart At(std::int64_t index) const;
};
// For a row, its selected cells, if any; for the grid, all selected parts.
SelectedParts SelectedIn(const Grid& grid, const AccessiblePart& part);

}  // namespace qvx::flexgrid
