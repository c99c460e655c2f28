#include "widgets/flexgrid/accessible_view.h"

#include <algorithm>
#include <utility>

#include "common/number_text.h"
#include "widgets/flexgrid/hit_test.h"

namespace qvx::flexgrid {

namespace {

namespace state = accessible_state;

bool IsHidden(const Grid& grid, const AccessiblePart& part) {
    return (!part.IsGrid() && grid.RowPixels(part.row) <= 0) || (part.IsCell() && grid.ColPixels(part.col) <= 0);
}

Text ShownTextOf(const Grid& grid, int row, int col) {
    const Text text = grid.TextMatrix(row, col);
    Text scratch;
    return Text(grid.ShownText(row, col, text, scratch));
}

bool Shows(const Grid& grid, const View& view, const AccessiblePart& part) {
    return (part.IsGrid() || IsVisible(RowAxis(grid, view), part.row)) &&
           (!part.IsCell() || IsVisible(ColumnAxis(grid, view), part.col));
}

bool IsNumber(TextView text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char16_t c) { return c >= u'0' && c <= u'9'; });
}

// Adds the texts of adjacent headers, equal ones only once.
void AddHeader(Text& name, Text& last, Text header) {
    if (header.empty() || header == last) {
        return;
    }
    name += name.empty() ? header : u" " + header;
    last = std::move(header);
}

// Returns the next shown item, across the border between fixed and scrolling ones; -1 for none.
int NextShown(const Axis& axis, int index, int step) {
    if (step > 0) {
        const int found = axis.shownAt(axis.startOf(index + 1));
        return found > index && found < axis.count ? found : -1;
    }
    const std::int64_t start = axis.startOf(index);
    return start == 0 ? -1 : axis.shownAt(start - 1);
}

std::optional<AccessiblePart> If(bool exists, const AccessiblePart& part) {
    return exists ? std::optional(part) : std::nullopt;
}

}  // namespace

bool HasPart(const Grid& grid, const AccessiblePart& part) {
    return part.IsGrid() || (part.row < grid.Rows() && part.col < grid.Cols());
}

bool IsHeader(const Grid& grid, const AccessiblePart& part) {
    return !part.IsGrid() && (part.row < grid.FixedRows() || (part.IsCell() && part.col < grid.FixedCols()));
}

int ChildCount(const Grid& grid, const AccessiblePart& part) {
    return part.IsGrid() ? grid.Rows() : part.IsRow() ? grid.Cols() : 0;
}

std::optional<AccessiblePart> ChildOf(const Grid& grid, const AccessiblePart& part, int id) {
    if (part.IsGrid() && id < 0 && grid.Cols() > 0) {
        const std::int64_t cell = -(static_cast<std::int64_t>(id) + 1);
        const AccessiblePart child{static_cast<int>(cell / grid.Cols()), static_cast<int>(cell % grid.Cols())};
        return If(HasPart(grid, child), child);
    }
    const bool exists = id >= 1 && id <= ChildCount(grid, part);
    return If(exists, part.IsGrid() ? AccessiblePart{id - 1, -1} : AccessiblePart{part.row, id - 1});
}

int IdInGrid(const Grid& grid, const AccessiblePart& part) {
    if (!part.IsCell()) {
        return part.row + 1;
    }
    // Grid::maxCells keeps this in range.
    return static_cast<int>(-1 - (static_cast<std::int64_t>(part.row) * grid.Cols() + part.col));
}

Text ColumnName(const Grid& grid, int col) {
    Text name;
    Text last;
    for (int row = 0; row < grid.FixedRows(); ++row) {
        AddHeader(name, last, grid.TextMatrix(row, col));
    }
    if (!name.empty()) {
        return name;
    }
    return u"Column " + IntegerToText(col < grid.FixedCols() ? col + 1 : col - grid.FixedCols() + 1);
}

Text RowName(const Grid& grid, int row) {
    Text name;
    Text last;
    for (int col = 0; col < grid.FixedCols(); ++col) {
        AddHeader(name, last, grid.TextMatrix(row, col));
    }
    if (row < grid.FixedRows()) {
        return grid.FixedRows() == 1 ? Text(u"Header") : u"Header " + IntegerToText(row + 1);
    }
    if (name.empty()) {
        return u"Row " + IntegerToText(row - grid.FixedRows() + 1);
    }
    return IsNumber(name) ? u"Row " + name : name;
}

Text NameOf(const Grid& grid, const AccessiblePart& part) {
    if (part.IsGrid()) {
        return {};
    }
    if (part.IsRow()) {
        return RowName(grid, part.row);
    }
    if (!IsHeader(grid, part)) {
        return ColumnName(grid, part.col) + u", " + RowName(grid, part.row);
    }
    Text own = grid.TextMatrix(part.row, part.col);
    if (own.empty()) {
        own = part.row < grid.FixedRows() ? ColumnName(grid, part.col) : RowName(grid, part.row);
    }
    if (part.row == 0 && grid.FixedRows() > 0 && grid.SortPlace(part.col) > 0) {
        own += grid.SortDescending(part.col) ? u", sorted descending" : u", sorted ascending";
    }
    return own;
}

std::optional<Text> ValueOf(const Grid& grid, const AccessiblePart& part) {
    if (part.IsGrid() || IsHeader(grid, part)) {
        return std::nullopt;
    }
    if (part.IsCell()) {
        return ShownTextOf(grid, part.row, part.col);
    }
    Text texts;
    bool first = true;
    for (int col = grid.FixedCols(); col < grid.Cols(); ++col) {
        if (grid.ColPixels(col) > 0) {
            texts += std::exchange(first, false) ? u"" : u"; ";
            texts += ShownTextOf(grid, part.row, col);
        }
    }
    return texts;
}

long RoleOf(const Grid& grid, const AccessiblePart& part) {
    if (part.IsGrid()) {
        return accessible_role::table;
    }
    if (part.IsRow()) {
        return accessible_role::row;
    }
    if (part.row < grid.FixedRows()) {
        return accessible_role::columnHeader;
    }
    return part.col < grid.FixedCols() ? accessible_role::rowHeader : accessible_role::cell;
}

long StateOf(const Grid& grid, const View& view, const AccessiblePart& part, bool editable) {
    const bool hasCells = grid.Rows() > 0 && grid.Cols() > 0;
    long states = 0;
    if (part.IsGrid()) {
        states |= state::focusable | state::multiSelectable | state::extSelectable;
        // If there is a cell to move to, that cell has the focus.
        states |= view.focused && !hasCells ? state::focused : 0;
    } else if (!IsHeader(grid, part)) {
        states |= state::selectable | (part.IsCell() ? state::focusable : 0);
    }
    if (!part.IsGrid() && hasCells) {
        const CellRange selection = grid.Selection();
        const bool selected = part.IsCell()
                                  ? selection.Contains(part.row, part.col)
                                  : selection.Contains(part.row, std::min(grid.FixedCols(), grid.Cols() - 1)) &&
                                        selection.Contains(part.row, grid.Cols() - 1);
        states |= selected ? state::selected : 0;
    }
    if (part.IsCell()) {
        states |= view.focused && part == AccessiblePart{grid.Row(), grid.Col()} ? state::focused : 0;
        states |= editable && !IsHeader(grid, part) ? 0 : state::readOnly;
    }
    if (!grid.Enabled()) {
        states &= ~(state::focusable | state::selectable | state::multiSelectable | state::extSelectable);
        states |= state::unavailable;
    }
    if (IsHidden(grid, part)) {
        states |= state::invisible;
    } else if (!Shows(grid, view, part)) {
        states |= state::offscreen;
    }
    return states;
}

Rect AreaOf(const Grid& grid, const View& view, const AccessiblePart& part) {
    const Rect client{0, 0, view.client.width, view.client.height};
    if (part.IsGrid() || grid.Cols() == 0) {
        return part.IsGrid() ? client : Rect{};
    }
    if (part.IsCell()) {
        const Rect area = CellArea(grid, view, part.row, part.col);
        return Shows(grid, view, part) ? area.Intersect(client) : area;
    }
    if (Shows(grid, view, part)) {
        return Shown(grid, view).AreaOf({part.row, 0, part.row, grid.Cols() - 1}).Intersect(client);
    }
    const Rect cell = CellArea(grid, view, part.row, 0);
    return {0, cell.top, view.client.width, cell.bottom};
}

std::optional<AccessiblePart> PartAt(const Grid& grid, const View& view, const AccessiblePart& part, Point point) {
    const Hit hit = HitTest(RowAxis(grid, view), ColumnAxis(grid, view), point);
    if (part.IsGrid()) {
        if (!AreaOf(grid, view, part).Contains(point)) {
            return std::nullopt;
        }
        // A row does not extend beyond the last column.
        return hit.OnCell() ? AccessiblePart{hit.row, -1} : part;
    }
    if (part.IsRow()) {
        return If(hit.OnCell() && hit.row == part.row, {hit.row, hit.col});
    }
    return If(AreaOf(grid, view, part).Contains(point), part);
}

std::optional<AccessiblePart> StepFrom(const Grid& grid, const AccessiblePart& part, AccessibleStep step) {
    using enum AccessibleStep;
    const auto stepped = [&](bool rows, int by) {
        const Axis axis = rows ? RowAxis(grid, {}) : ColumnAxis(grid, {});
        const int found = NextShown(axis, rows ? part.row : part.col, by);
        return If(found >= 0, rows ? AccessiblePart{found, part.col} : AccessiblePart{part.row, found});
    };
    const auto sibling = [&](int by) {
        const AccessiblePart other =
            part.IsRow() ? AccessiblePart{part.row + by, -1} : AccessiblePart{part.row, part.col + by};
        const bool exists = part.IsRow() ? other.row >= 0 : other.col >= 0;
        return If(exists && HasPart(grid, other), other);
    };
    if (step == firstChild || step == lastChild) {
        return ChildOf(grid, part, step == firstChild ? 1 : std::max(1, ChildCount(grid, part)));
    }
    if (part.IsGrid()) {
        return std::nullopt;
    }
    const int onward = grid.RightToLeft() ? -1 : 1;
    switch (step) {
        case up:
            return stepped(true, -1);
        case down:
            return stepped(true, 1);
        case left:
            return part.IsCell() ? stepped(false, -onward) : std::nullopt;
        case right:
            return part.IsCell() ? stepped(false, onward) : std::nullopt;
        case next:
            return sibling(1);
        case previous:
            return sibling(-1);
        default:
            return std::nullopt;
    }
}

std::optional<Cursor> SelectPart(const Grid& grid, const View& view, const AccessiblePart& part, long flags) {
    namespace select = accessible_select;
    const Cursor now = grid.CurrentCursor();
    const long selecting = flags & ~select::takeFocus;
    const bool known = selecting == 0 || selecting == select::takeSelection || selecting == select::extendSelection;
    if (!known || flags == 0 || !grid.Enabled() || IsHidden(grid, part)) {
        return std::nullopt;
    }
    if (part.IsGrid()) {
        return flags == select::takeFocus ? std::optional(now) : std::nullopt;
    }
    if (selecting == 0 && (part.IsRow() || IsHeader(grid, part))) {
        return std::nullopt;
    }
    if (part.IsRow() && IsHeader(grid, part)) {
        return std::nullopt;
    }
    const Hit hit{part.row, std::max(part.col, 0), part.row < grid.FixedRows(),
                  part.IsRow() || part.col < grid.FixedCols()};
    const Press press = MousePress(hit, selecting == select::extendSelection, grid.AllowBigSelection(),
                                   grid.SelectionMode(), now, RowAxis(grid, view), ColumnAxis(grid, view));
    const bool corner = hit.fixedRow && hit.fixedCol;
    return press.drag != Drag::None || (corner && press.cursor != now) ? std::optional(press.cursor) : std::nullopt;
}

std::int64_t SelectedParts::Count() const {
    if (range.Empty()) {
        return 0;
    }
    const std::int64_t down = range.bottom - range.top + 1;
    return rows ? down : down * (range.right - range.left + 1);
}

AccessiblePart SelectedParts::At(std::int64_t index) const {
    if (rows) {
        return {range.top + static_cast<int>(index), -1};
    }
    const std::int64_t across = range.right - range.left + 1;
    return {range.top + static_cast<int>(index / across), range.left + static_cast<int>(index % across)};
}

SelectedParts SelectedIn(const Grid& grid, const AccessiblePart& part) {
    SelectedParts selected{grid.Selection(), false};
    if (part.IsGrid()) {
        selected.rows = grid.SelectionMode() == GridSelectionMode::byRow;
    } else if (selected.range.Contains(part.row, part.IsCell() ? part.col : selected.range.left) && part.IsRow()) {
        selected.range.top = part.row;
        selected.range.bottom = part.row;
    } else {
        selected.range = {};
    }
    return selected;
}

}  // namespace qvx::flexgrid
