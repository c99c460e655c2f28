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

// A field's value as text, the way cells show it: nothing for Null and Empty; numbers with "." as decimal point;
// True and False; dates and times in the system's short form. Error 13 for what has no such text: binary data, objects.
void AppendValue(const VARIANT& value, Text& row);

}  // namespace qvx::grid
