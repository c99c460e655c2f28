// A menu item with a picture: how large it is and how it is drawn.
//
//     |pic|  Label                 Ctrl+K  >|
//
// The picture's column is there for items without a picture too, so that all labels begin at one place. The arrow of
// an item that opens a menu is the system's.
#pragma once

#include <array>

#include "common/text.h"
#include "drawing/surface.h"

namespace qvx::menus {

// The system's colours for menus, looked up.
struct MenuColors {
    OleColor ground = 0;
    OleColor text = 0;
    OleColor disabledText = 0;
    OleColor selected = 0;       // behind a selected item
    OleColor selectedFrame = 0;  // around it
    OleColor selectedText = 0;
    OleColor checkedGround = 0;  // behind the picture of a checked item
};

struct MenuItemLook {
    Text text;  // as the menu has it, keys behind a tab
    FontSpec font;
    MenuColors colors;
    // Both null for an item without one.
    const Picture* picture = nullptr;
    const Picture* disabledPicture = nullptr;
    bool selected = false;
    bool disabled = false;
    bool checked = false;
    bool radio = false;           // a checked item shows a dot
    bool isDefault = false;       // bold
    bool hideAccessKeys = false;  // as long as the user has not taken the keyboard
    bool rightToLeft = false;     // the picture is at the right
};

// What the item needs, in pixels of the surface. The system adds the room for its arrow to the width.
Size MeasureMenuItem(Surface& surface, const MenuItemLook& look);

void DrawMenuItem(Surface& surface, const Rect& area, const MenuItemLook& look);

// Where the picture is drawn in an item, scaled to it whatever its own size.
Rect MenuPictureArea(const Rect& item, Dpi dpi, bool rightToLeft);

}  // namespace qvx::menus
