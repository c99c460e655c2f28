// How every control tells its user of an error that it has trapped.
#pragma once

#include <windows.h>

#include "common/text.h"

namespace qvx {

// Shows the description over `owner` under the application's title and the error's number. Nothing for number 0.
void ShowErrorReport(HWND owner, int number, TextView description);

}  // namespace qvx
