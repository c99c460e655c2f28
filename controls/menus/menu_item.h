// The size and drawing of a menu item with a picture.
//
//     |pic|  Label                 Ctrl+K  >|
//
// Items without a picture have the picture's column too, so that all labels are aligned. The system draws the arrow of
// an item that opens a menu.
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
    OleColor selected = 0;       // the background of a selected item
    OleColor selectedFrame = 0;  // the frame around it
    OleColor selectedText = 0;
    OleColor checkedGround = 0;  // the background of a checked item's picture
};

struct MenuItemLook {
    Text text;  // as the menu stores it, with the keys after a tab
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
    bool hideAccessKeys = false;  // while the user has not used the keyboard
    bool rightToLeft = false;     // the picture is at the right
};

// Returns the size that the item needs, in pixels of the surface. The system adds the room for its arrow to the width.
Size MeasureMenuItem(Surface& surface, const MenuItemLook& look);

// Draws the item in `area`, in pixels of the surface.
void DrawMenuItem(Surface& surface, const Rect& area, const MenuItemLook& look);

// Returns the area of the picture in an item; the picture is scaled to it, whatever its own size.
Rect MenuPictureArea(const Rect& item, Dpi dpi, bool rightToLeft);

}  // namespace qvx::menus
