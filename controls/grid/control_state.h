// The state of a ComboGrid besides its inner grid. Columns are named by their captions in the first row, never by
// number, so that every list below stays valid when columns are moved.
#pragma once

#include <vector>

#include "common/text.h"

namespace qvx::grid {

// Which cells of list columns have an arrow that opens the list.
enum class ListArrows { none = 0, currentCell = 1, allCells = 2, last = allCells };
// Which entries of a list are found while typing: those that begin with the text, or also those that contain it.
enum class ListMatch { beginnings = 0, parts = 1, last = parts };

struct ControlState {
    Text stringFormat;  // "[Cap1],[Cap2]", made by RefreshColIndex
    Text nonFocusColumns;
    Text dateFormat = u"DD/MM/YYYY";
    Text checkValueFor;  // coded list
    Text inVisibleColumns;
    Text requiredFields;
    Text validateColumns;   // those about whose cells the host is asked
    Text columnsDataType;   // coded list
    Text columnsMaxLength;  // like a coded list, with any number
    Text unChangableColumns;
    Text listColumns;
    Text inActiveColumns;
    // The number that each column had before the user moved any. If its size is not that of the grid, none has moved.
    std::vector<int> columnOrder;
    Text footer;         // coded list
    Text columnFormats;  // "[Caption]format,[Caption]format"
    Text bindFields;     // "[Caption]field,[Caption]field": see FieldMap
    int keyColumn = -1;  // below 0: there is no key column
    int bindFrom = 1;
    ListArrows listArrows = ListArrows::none;
    ListMatch listMatch = ListMatch::beginnings;
    bool cellToolTip = false;
    bool projectionBold = false;
    bool autoTab = true;
    bool projectSelection = true;
    bool autoRecordNumber = false;
    bool autoAddNew = false;
    bool extendedKeys = false;      // the keys of spreadsheets, of which some had another meaning before
    bool keepUnchanged = false;     // an edit that changes nothing leaves the cell as it is
    bool sortOnHeader = false;      // a click on a header sorts
    bool findBar = false;           // the user can search, by the keys for that
    bool filterRow = false;         // the user can filter, by fields above the columns
    bool listClickCommits = false;  // an entry chosen with the mouse ends the edit
    bool keepEditing = false;       // the edit stays open while the user is in another program
    bool fitColumns = false;        // a double click on a border in the header fits the column
    bool moveColumns = false;       // columns are dragged to other places by their headers
    bool markInvalid = false;       // cells that break a rule are marked, and F8 goes through them
    bool markChanged = false;       // rows that differ from their records are marked
    bool contextMenu = false;       // the right button opens the grid's menu
    bool onErrorFirst = false;      // the host is notified of failures before the user
    bool changed = false;           // set by every committed edit
    // The single variable that is passed by reference as Cancel and Response to every event that has such an argument.
    bool eventFlag = false;
    bool editing = false;      // an edit is being opened
    bool initialised = false;  // the run-time preparation is done; never reset
    // The cell that is being edited; both are -1 while no edit is open.
    int editCol = -1;
    int editRow = -1;
    int editNumber = 0;  // counts the edits opened so far
    int committing = 0;  // the edit whose commit is under way; 0 for none
};

// Whether an edit is open.
inline bool EditIsOpen(const ControlState& state) { return state.editRow >= 0 && state.editCol >= 0; }

}  // namespace qvx::grid
