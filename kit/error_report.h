// The report of an error that a control handles instead of returning it to its host.
#pragma once

#include <windows.h>

#include "common/text.h"

namespace qvx {

// Shows the description over `owner`'s top-level window, titled with the application's title and the number. Does
// nothing for number 0.
void ShowErrorReport(HWND owner, int number, TextView description);

}  // namespace qvx
