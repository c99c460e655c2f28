// What the system has set for menus.
#pragma once

#include <windows.h>

#include "controls/menus/menu_item.h"

namespace qvx::menus {

// The font of menus, in points.
FontSpec SystemMenuFont();
MenuColors SystemMenuColors();

}  // namespace qvx::menus
