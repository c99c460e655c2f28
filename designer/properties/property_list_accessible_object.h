// The property list as assistive programs see it: a list whose items have the properties' names and values.
#pragma once

#include <windows.h>

#include <oleacc.h>

#include "com/pointer.h"

namespace qvx::host::designer {

class PropertyRowsWindow;

ComPtr<IAccessible> MakeAccessibleRows(PropertyRowsWindow& rows);

}  // namespace qvx::host::designer
