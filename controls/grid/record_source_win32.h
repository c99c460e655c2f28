// Record sets of the system's database objects, and objects that look like one, as sources of records.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <memory>

#include "common/text.h"
#include "controls/grid/binding.h"

namespace qvx::grid {

// Reads through the record set's own interface where the object has it, else by the names RecordCount, EOF, Fields
// (Count, Item, Value), AbsolutePosition and MoveNext; many records at a time where it offers GetRows. The record set
// is held, not moved to its first record, and left behind the last one read. Error 91 without an object.
std::unique_ptr<RecordSource> MakeRecordSource(IDispatch* recordSet);

}  // namespace qvx::grid
