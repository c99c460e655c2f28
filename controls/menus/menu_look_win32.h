// The system's settings for menus.
#pragma once

#include <windows.h>

#include "controls/menus/menu_item.h"

namespace qvx::menus {

// Returns the font of menus, with its size in points.
FontSpec SystemMenuFont();
MenuColors SystemMenuColors();

}  // namespace qvx::menus
