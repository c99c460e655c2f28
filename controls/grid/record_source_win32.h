// Record sets of the system's database objects, and objects that behave like one, as sources of records.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <memory>

#include "common/text.h"
#include "controls/grid/binding.h"

namespace qvx::grid {

// Reads through the record set's own interface if the object has it, else by the names RecordCount, EOF, Fields (Count,
// Item, Value), AbsolutePosition and MoveNext; many records at a time if it offers GetRows. Keeps a reference to the
// record set, does not move it to its first record, and leaves it after the last record read. Throws error 91 without
// an object.
std::unique_ptr<RecordSource> MakeRecordSource(IDispatch* recordSet);

}  // namespace qvx::grid
