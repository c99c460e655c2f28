// A host's menu objects and its image list, accessed by the names of their members.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <vector>

#include "com/pointer.h"
#include "controls/menus/menu_match.h"

namespace qvx::menus {

// Whether a control of a form is one of its menus: its class is called "Menu", or it has the members of a menu, Caption
// and Checked, and no position on the form (Left).
bool IsMenuControl(IDispatch* control);

struct MenuControl {
    Text key;  // of its picture
    MenuObject object;
};

// Returns the menus among a form's controls, in their order; none for a host without such a collection.
std::vector<MenuControl> MenuControls(IDispatch* controls);

struct KeyedPicture {
    Text key;
    ComPtr<IPictureDisp> picture;
};

// Returns the pictures of an image list; none if the list does not respond. Entries that are not pictures are skipped.
std::vector<KeyedPicture> ReadPictures(IDispatch* imageList);
// Replaces the contents of the image list with these pictures. Throws RunTimeError with the list's error.
void StorePictures(IDispatch* imageList, const std::vector<KeyedPicture>& pictures);

}  // namespace qvx::menus
