// Opening a page of the documentation in the user's browser.
#pragma once

#include <windows.h>

#include "common/text.h"

namespace qvx::host::designer {

// False when nothing could be started. `page` is the file of the address.
bool OpenInBrowser(HWND owner, const Text& page, const Text& address);

}  // namespace qvx::host::designer
