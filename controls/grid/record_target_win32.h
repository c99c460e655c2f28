// Record sets of hosts as records that can be written.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <memory>

#include "controls/grid/apply_changes.h"

namespace qvx::grid {

// Writes through the members EOF, MoveFirst, MoveNext, Fields (Count, Item, Name, Value), AddNew, Update and Delete,
// and where they exist through BOF, CancelUpdate, Type of a field, and ActiveConnection with BeginTrans, CommitTrans
// and RollbackTrans. A text is converted to the type of the value that it replaces, or else of the field. Throws error
// 91 without an object, 438 without one of the members.
std::unique_ptr<RecordTarget> MakeRecordTarget(IDispatch* recordSet);

}  // namespace qvx::grid
