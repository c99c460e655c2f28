// Writing the changes of a grid back to the records that it was loaded from.
#pragma once

#include <functional>
#include <vector>

#include "common/text.h"
#include "controls/grid/field_map.h"
#include "controls/grid/row_states.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::grid {

// Records that can be written, with a current one. Any call may raise a run-time error.
class RecordTarget {
  public:
    virtual ~RecordTarget() = default;
    virtual std::vector<Text> FieldNames() = 0;
    // Moves to the first record; does nothing if there is none.
    virtual void MoveFirst() = 0;
    virtual bool AtEnd() = 0;
    virtual void MoveNext() = 0;
    virtual Text Value(int field) = 0;
    // Changes the current record, or the one that is being added, until Update.
    virtual void SetValue(int field, TextView text) = 0;
    virtual void AddNew() = 0;
    // The record that was added is the current one afterwards.
    virtual void Update() = 0;
    virtual void CancelUpdate() = 0;
    // The record stays the current one until the next move, which leads to the record after it.
    virtual void Delete() = 0;
    // Keeps the values of the current record and returns a number for them; PutBack changes the current record, or the
    // one that is being added, to them as far as its fields can be written.
    virtual int Keep() = 0;
    virtual void PutBack(int kept) = 0;
    // Begin returns false if there are no transactions.
    virtual bool Begin() = 0;
    virtual void Commit() = 0;
    virtual void Rollback() = 0;
};

// A record that no longer is what a row was loaded from.
struct RecordConflict {
    int row = -1;    // of the grid; -1 for a deleted row
    int index = -1;  // of the deleted row; -1 for one in the grid
    Text field;      // "" if the record does not exist any more
    Text ours;
    Text theirs;
};

enum class ConflictAnswer { keep, overwrite, cancel };

// Writes new, changed and deleted rows and returns their number; afterwards the rows are unchanged and show what the
// records contain. A row finds its record by the original texts of the key fields, separated by commas, or without any
// by the number that the record had when it was loaded. An emptied row counts as deleted, and a new one without text is
// left out.
//
// Everything is examined before anything is written. Each field that differs from the row's original is a conflict; an
// overwritten record that does not exist any more is added again. After a cancelled conflict the result is 0. A
// conflict that is kept raises error 30020, unknown key fields 380, and other errors are passed on; whatever was
// written until then is undone, by the transaction or one by one, and the rows keep their states.
int ApplyChanges(flexgrid::Grid& grid, RowStates& states, const FieldMap& map, RecordTarget& target, TextView keyFields,
                 const std::function<ConflictAnswer(const RecordConflict&)>& ask);

}  // namespace qvx::grid
