// What the binary that this code is linked into keeps for all its COM objects.
#pragma once

#include <windows.h>

#include "common/text.h"

namespace qvx {

// The module (a .dll, .ocx or .exe) that holds this code, whoever loaded it.
HMODULE ThisModule();
// Its full path.
Text ModulePath(HMODULE module);

// Live objects and server locks together; the module may be unloaded at none.
long LiveObjects();
void CountObject(long change);

}  // namespace qvx
