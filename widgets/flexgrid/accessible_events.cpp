#include "widgets/flexgrid/accessible_events.h"

#include <algorithm>
#include <utility>

namespace qvx::flexgrid {

void AccessibleEvents::Note(std::vector<AccessiblePart>& parts, const AccessiblePart& cell) {
    if (parts.size() < mostCells && std::find(parts.begin(), parts.end(), cell) == parts.end()) {
        parts.push_back(cell);
    }
    pending_ = true;
}

void AccessibleEvents::NoteValue(int row, int col) { Note(values_, {row, col}); }

void AccessibleEvents::NoteTexts(const Grid& grid, const CellRange& range) {
    if (range.Contains(grid.Row(), grid.Col())) {
        Note(cells_);
    }
    NoteHeaders({range.top, range.left, std::min(range.bottom, grid.FixedRows() - 1), range.right});
    NoteHeaders(
        {std::max(range.top, grid.FixedRows()), range.left, range.bottom, std::min(range.right, grid.FixedCols() - 1)});
}

void AccessibleEvents::NoteHeaders(const CellRange& range) {
    for (int row = range.top; row <= range.bottom; ++row) {
        for (int col = range.left; col <= range.right; ++col) {
            if (names_.size() == mostCells) {
                return;
            }
            Note(names_, {row, col});
        }
    }
}

std::vector<AccessibleEvent> AccessibleEvents::Take(const Grid& grid, bool focused, bool edited) {
    using Kind = AccessibleEvent::Kind;
    std::vector<AccessibleEvent> events;
    const bool hasCells = grid.Rows() > 0 && grid.Cols() > 0;
    const AccessiblePart cell = hasCells ? AccessiblePart{grid.Row(), grid.Col()} : AccessiblePart{};
    const int id = IdInGrid(grid, cell);
    const bool otherCell = cell != notifiedCell_;
    const bool otherText = !edited && hasCells && grid.Text() != notifiedText_;
    const bool reordered = structure_ && grid.StructureVersion() != notifiedStructure_;
    if (reordered) {
        events.push_back({Kind::reorder, 0});
    }
    // Another row may have moved under the cursor.
    if (focused && (focus_ || (moved_ && otherCell) || (reordered && (otherCell || otherText)))) {
        events.push_back({Kind::focus, id});
    }
    const CellRange selection = grid.Selection();
    if ((moved_ || reordered) && hasCells && selection != notifiedSelection_) {
        const bool one = SelectedIn(grid, {}).Count() == 1;
        events.push_back(one ? AccessibleEvent{Kind::selection, IdInGrid(grid, SelectedIn(grid, {}).At(0))}
                             : AccessibleEvent{Kind::selectionWithin, 0});
    }
    if (cells_ && !otherCell && otherText && !reordered && hasCells &&
        std::find(values_.begin(), values_.end(), cell) == values_.end()) {
        values_.push_back(cell);
    }
    for (const AccessiblePart& value : values_) {
        if (HasPart(grid, value)) {
            events.push_back({Kind::valueChange, IdInGrid(grid, value)});
        }
    }
    // After a reordering, clients read everything anew.
    for (const AccessiblePart& name : names_) {
        if (!reordered && HasPart(grid, name)) {
            events.push_back({Kind::nameChange, IdInGrid(grid, name)});
        }
    }
    pending_ = focus_ = moved_ = structure_ = cells_ = false;
    values_.clear();
    names_.clear();
    notifiedStructure_ = grid.StructureVersion();
    notifiedCell_ = cell;
    notifiedSelection_ = selection;
    if (otherText) {
        notifiedText_ = grid.Text();
    }
    return events;
}

}  // namespace qvx::flexgrid
