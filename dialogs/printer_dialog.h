// The system's dialog for the choice of a printer.
#pragma once

#include <cstdint>

#include "win/handles.h"

namespace qvx {

// Returns the chosen printer's device context; null when the user has cancelled. Throws when there is no printer.
UniqueMemoryDc ShowPrinterDialog(std::intptr_t owner);

}  // namespace qvx
