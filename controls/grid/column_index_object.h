// The collection that hosts get as ComboGrid.ColIndex.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include "com/pointer.h"
#include "controls/grid/column_index.h"

namespace qvx::grid {

// Makes a collection of column numbers (Long) with their keys. It belongs to the host from then on, which may add and
// remove items.
ComPtr<IDispatch> MakeColumnIndexObject(const ColumnIndex& index);

}  // namespace qvx::grid
