// Rows that know whether they have been changed: switched on and off, and accepted.
#include "common/run_time_error.h"
#include "controls/grid/entry_grid_window.h"

namespace qvx::grid {

void EntryGrid::SetTrackRows(bool tracks) {
    if (tracks == states_.On()) return;
    if (tracks) {
        states_.Start();
    } else {
        states_.Stop();
    }
    RefreshMarks();
}

void EntryGrid::AcceptChanges() {
    CommitOpenEdit();
    states_.Accept();
    RefreshMarks();
}

void EntryGrid::CheckTracked() const {
    if (!states_.On()) throw RunTimeError(errors::invalidProcedureCall, u"Only rows that are tracked can be applied.");
}

int EntryGrid::Apply(RecordTarget& target, TextView keyFields) {
    CommitOpenEdit();
    const FieldMap map(Model(), state_, target.FieldNames());
    const int written = ApplyChanges(Model(), states_, map, target, keyFields, [this](const RecordConflict& conflict) {
        bool overwrite = false;
        bool cancel = false;
        events_.ApplyConflict(conflict, overwrite, cancel);
        return cancel ? ConflictAnswer::cancel : overwrite ? ConflictAnswer::overwrite : ConflictAnswer::keep;
    });
    RefreshMarks();
    return written;
}

}  // namespace qvx::grid
