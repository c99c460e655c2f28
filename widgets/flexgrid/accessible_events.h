// Decides which events about a grid assistive programs receive. Changes are only noted, at the cost of a few
// comparisons, and reported together when the code that makes them has finished: a load of any number of rows is one
// event.
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
    // The grid has got or lost the keyboard focus.
    void NoteFocus() { Note(focus_); }
    // Cursor, selection, or the number and order of rows and columns may have changed.
    void NoteCursor() { Note(moved_); }
    void NoteStructure() { Note(structure_); }
    // Whether a change of the texts in the range is of interest: that of the current cell is, and that of a header,
    // which is its name.
    static bool Concerned(const Grid& grid, const CellRange& range) {
        return range.Contains(grid.Row(), grid.Col()) || range.top < grid.FixedRows() || range.left < grid.FixedCols();
    }
    void NoteTexts(const Grid& grid, const CellRange& range);
    // The user has given a cell another text.
    void NoteValue(int row, int col);
    bool Pending() const { return pending_; }

    // Returns the events to send now, in order; nothing is pending afterwards. While an editor is open over the current
    // cell (`edited`), the editor itself reports changes of its text.
    std::vector<AccessibleEvent> Take(const Grid& grid, bool focused, bool edited);

  private:
    // More cells than this at once cannot be an entry by a user.
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
