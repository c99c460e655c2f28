// Which events assistive programs are sent about a grid. Changes are only noted, at the cost of a few comparisons, and
// told of together once whatever made them has come to an end: a load of any number of rows is one event.
#pragma once

#include <cstdint>
#include <vector>

#include "common/text.h"
#include "widgets/flexgrid/accessible_view.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::flexgrid {

struct AccessibleEvent {
    enum class Kind { reorder, focus, selection, selectionWithin, valueChange, nameChange };
    Kind kind = Kind::focus;
    int childId = 0;  // as in IdInGrid
    friend bool operator==(const AccessibleEvent&, const AccessibleEvent&) = default;
};

class AccessibleEvents {
  public:
    // The keyboard focus came to the grid, or went.
    void NoteFocus() { Note(focus_); }
    // Cursor, selection, or the number and order of rows and columns may have changed.
    void NoteCursor() { Note(moved_); }
    void NoteStructure() { Note(structure_); }
    // Whether a change of the texts in the range is of interest: the current cell's is, and a header's, which is its
    // name.
    static bool Concerned(const Grid& grid, const CellRange& range) {
        return range.Contains(grid.Row(), grid.Col()) || range.top < grid.FixedRows() || range.left < grid.FixedCols();
    }
    void NoteTexts(const Grid& grid, const CellRange& range);
    // The user has given a cell another text.
    void NoteValue(int row, int col);
    bool Pending() const { return pending_; }

    // What is to be told of now, in order; nothing is pending afterwards. While an editor is open over the current cell
    // (`edited`), its text is the editor's to tell of.
    std::vector<AccessibleEvent> Take(const Grid& grid, bool focused, bool edited);

  private:
    // More cells than this at once are no entry by a user any more.
    static constexpr std::size_t mostCells = 16;

    void Note(bool& what) {
        what = true;
        pending_ = true;
    }
    void NoteHeaders(const CellRange& range);
    void Note(std::vector<AccessiblePart>& parts, const AccessiblePart& cell);

    bool pending_ = false;
    bool focus_ = false;
    bool moved_ = false;
    bool structure_ = false;
    bool cells_ = false;
    std::vector<AccessiblePart> values_;
    std::vector<AccessiblePart> names_;

    // As of the last events.
    std::uint64_t notifiedStructure_ = 0;
    AccessiblePart notifiedCell_;
    CellRange notifiedSelection_;
    Text notifiedText_;
};

}  // namespace qvx::flexgrid
