// A drawing into a bitmap, as a picture to compare.
#pragma once

#include <windows.h>

#include <functional>

#include "tests/support/png_file.h"
#include "win/handles.h"

namespace qvx::test {

// The bitmap is black before `draw`.
inline PixelPicture PictureOf(Size size, const std::function<void(HDC)>& draw) {
    BITMAPINFO info{};
    info.bmiHeader = {sizeof info.bmiHeader, size.width, -size.height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    const UniqueMemoryDc dc(CreateCompatibleDC(nullptr));
    const UniqueBitmap bitmap(CreateDIBSection(dc.Get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    const SelectedObject selected(dc.Get(), bitmap.Get());
    draw(dc.Get());
    GdiFlush();
    PixelPicture picture(size);
    for (std::size_t i = 0; i < picture.pixels.size(); ++i) {
        const DWORD pixel = static_cast<DWORD*>(bits)[i];
        picture.pixels[i] = RGB(pixel >> 16 & 0xFF, pixel >> 8 & 0xFF, pixel & 0xFF);
    }
    return picture;
}

// What is on the screen of a window that nothing covers; black outside its region.
inline PixelPicture PictureOnScreen(HWND window) {
    UpdateWindow(window);
    RECT place{};
    GetWindowRect(window, &place);
    const Size size{static_cast<int>(place.right - place.left), static_cast<int>(place.bottom - place.top)};
    const UniqueRegion region(CreateRectRgn(0, 0, 0, 0));
    const bool cut = GetWindowRgn(window, region.Get()) != ERROR;
    return PictureOf(size, [&](HDC dc) {
        if (cut) SelectClipRgn(dc, region.Get());
        const HDC from = GetWindowDC(window);
        BitBlt(dc, 0, 0, size.width, size.height, from, 0, 0, SRCCOPY);
        ReleaseDC(window, from);
    });
}

}  // namespace qvx::test
