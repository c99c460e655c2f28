// The system's own dialogs for values. Messages are dispatched while they are open.
#pragma once

#include <windows.h>

#include <optional>

#include "common/font_spec.h"
#include "common/ole_color.h"
#include "common/text.h"

namespace qvx::host::designer {

// Nothing when the user cancels the dialog.
std::optional<OleColor> AskColor(HWND owner, OleColor before);
std::optional<FontSpec> AskFont(HWND owner, const FontSpec& before);
// The path of an existing file; empty when the user cancels the dialog.
Text AskPictureFile(HWND owner);

}  // namespace qvx::host::designer
