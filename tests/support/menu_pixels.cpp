#include "tests/support/menu_pixels.h"

#include <gtest/gtest.h>
#include <olectl.h>

#include "tests/support/drawn_picture.h"
#include "win/handles.h"

namespace qvx::test {

namespace {

MENUITEMINFOW InfoOf(HMENU menu, int position) {
    MENUITEMINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_ID | MIIM_DATA;
    GetMenuItemInfoW(menu, static_cast<UINT>(position), TRUE, &info);
    return info;
}

ComPtr<IPictureDisp> PictureFrom(PICTDESC description) {
    description.cbSizeofstruct = sizeof description;
    ComPtr<IPictureDisp> picture;
    EXPECT_EQ(S_OK, OleCreatePictureIndirect(&description, IID_IPictureDisp, TRUE, picture.put_void()));
    return picture;
}

}  // namespace

ComPtr<IPictureDisp> SolidPicture(Size size, COLORREF color) {
    const UniqueMemoryDc dc(CreateCompatibleDC(nullptr));
    BITMAPINFO info{};
    info.bmiHeader = {sizeof info.bmiHeader, size.width, -size.height, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    UniqueBitmap bitmap(CreateDIBSection(dc.Get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    {
        const SelectedObject selected(dc.Get(), bitmap.Get());
        const UniqueBrush brush(CreateSolidBrush(color));
        const RECT all{0, 0, size.width, size.height};
        FillRect(dc.Get(), &all, brush.Get());
    }
    PICTDESC description{};
    description.picType = PICTYPE_BITMAP;
    description.bmp.hbitmap = bitmap.Get();
    auto picture = PictureFrom(description);
    bitmap.Detach();  // the picture's now
    return picture;
}

ComPtr<IPictureDisp> EmptyPicture() {
    PICTDESC description{};
    description.picType = PICTYPE_NONE;
    return PictureFrom(description);
}

Size MeasureItem(HWND window, HMENU menu, int position) {
    const MENUITEMINFOW info = InfoOf(menu, position);
    MEASUREITEMSTRUCT request{};
    request.CtlType = ODT_MENU;
    request.itemID = info.wID;
    request.itemData = info.dwItemData;
    SendMessageW(window, WM_MEASUREITEM, 0, reinterpret_cast<LPARAM>(&request));
    return {static_cast<int>(request.itemWidth), static_cast<int>(request.itemHeight)};
}

PixelPicture DrawnItem(HWND window, HMENU menu, int position, UINT state) {
    constexpr int moreThanAsked = 40;
    Size size = MeasureItem(window, menu, position);
    size.width += moreThanAsked;
    return PictureOf(size, [&](HDC dc) {
        const MENUITEMINFOW item = InfoOf(menu, position);
        DRAWITEMSTRUCT request{};
        request.CtlType = ODT_MENU;
        request.itemID = item.wID;
        request.itemAction = ODA_DRAWENTIRE;
        request.itemState = state;
        request.hwndItem = reinterpret_cast<HWND>(menu);
        request.hDC = dc;
        request.rcItem = {0, 0, size.width, size.height};
        request.itemData = item.dwItemData;
        SendMessageW(window, WM_DRAWITEM, 0, reinterpret_cast<LPARAM>(&request));
    });
}

}  // namespace qvx::test
