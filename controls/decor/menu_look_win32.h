// What the system has set for menus.
#pragma once

#include <windows.h>

#include "controls/decor/menu_item.h"

namespace qvx::decor {

// The font of menus, in points.
FontSpec SystemMenuFont();
MenuColors SystemMenuColors();

}  // namespace qvx::decor
