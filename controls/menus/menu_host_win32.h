// A host's menu objects and its image list, read by their members' names.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <vector>

#include "com/pointer.h"
#include "controls/menus/menu_match.h"

namespace qvx::menus {

// Whether a control of a form is one of its menus: its class is called "Menu", or it has members as menus have them,
// Caption and Checked, and no place on the form (Left).
bool IsMenuControl(IDispatch* control);

struct MenuControl {
    Text key;  // of its picture
    MenuObject object;
};

// The menus among a form's controls, in their order; none for a host without such a collection.
std::vector<MenuControl> MenuControls(IDispatch* controls);

struct KeyedPicture {
    Text key;
    ComPtr<IPictureDisp> picture;
};

// What an image list holds; nothing of one that does not answer. Pictures that are none are left out.
std::vector<KeyedPicture> ReadPictures(IDispatch* imageList);
// Puts these in place of what the image list holds. Throws RunTimeError with what the list says.
void StorePictures(IDispatch* imageList, const std::vector<KeyedPicture>& pictures);

}  // namespace qvx::menus
