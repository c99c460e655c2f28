// The least that an object with a cell property needs: a dual interface over an array of texts, whose late-bound calls
// the system makes from a type library.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include "cells.h"
#include "com/pointer.h"

namespace qvx::bench {

// An object of that many cells, all of them empty.
ComPtr<IBenchCells> MakeCellObject(long rows, long cols);

}  // namespace qvx::bench
