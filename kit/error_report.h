// How a control reports an error that it trapped, instead of passing it to its host.
#pragma once

#include <windows.h>

#include "common/text.h"

namespace qvx {

// Shows the description over `owner`'s top-level window, titled with the application's title and the number. Nothing
// for number 0.
void ShowErrorReport(HWND owner, int number, TextView description);

}  // namespace qvx
