// Menu items as the window that owns them measures and draws them, and pictures for them.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include "com/pointer.h"
#include "common/geometry.h"
#include "tests/support/png_file.h"

namespace qvx::test {

// A bitmap of one colour.
ComPtr<IPictureDisp> SolidPicture(Size size, COLORREF color);
// A picture of no kind, without an extent.
ComPtr<IPictureDisp> EmptyPicture();

// What the window answers when it is asked for an owner-drawn item's size; 0 by 0 when it does not.
Size MeasureItem(HWND window, HMENU menu, int position);
// The item as the window draws it, 40 pixels wider than it asked to be. `state` is one of ODS_xxx.
PixelPicture DrawnItem(HWND window, HMENU menu, int position, UINT state = 0);

}  // namespace qvx::test
