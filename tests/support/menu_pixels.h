// Owner-drawn menu items as their window measures and draws them, and pictures for them.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include "com/pointer.h"
#include "common/geometry.h"
#include "tests/support/png_file.h"

namespace qvx::test {

// Makes a picture: a bitmap of one colour.
ComPtr<IPictureDisp> SolidPicture(Size size, COLORREF color);
// Makes a picture of no kind, without an extent.
ComPtr<IPictureDisp> EmptyPicture();

// Returns the size that the window reports for an owner-drawn item, in pixels; 0 by 0 when it reports none.
Size MeasureItem(HWND window, HMENU menu, int position);
// Returns the item as the window draws it, 40 pixels wider than it requested. `state` consists of ODS_xxx bits.
PixelPicture DrawnItem(HWND window, HMENU menu, int position, UINT state = 0);

}  // namespace qvx::test
