#include "tests/support/png_file.h"

#include <objidl.h>

#include <algorithm>

// What the header expects of the system's own min and max.
namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus
#include <gdiplus.h>

namespace qvx::test {

namespace {

// Starts the library once; it stays until the end of the program.
void StartDrawing() {
    static ULONG_PTR token = 0;
    const Gdiplus::GdiplusStartupInput input;
    if (token == 0) Gdiplus::GdiplusStartup(&token, &input, nullptr);
}

}  // namespace

std::optional<PixelPicture> ReadPng(const std::wstring& path) {
    StartDrawing();
    Gdiplus::Bitmap bitmap(path.c_str());
    if (bitmap.GetLastStatus() != Gdiplus::Ok) return std::nullopt;
    PixelPicture picture({static_cast<int>(bitmap.GetWidth()), static_cast<int>(bitmap.GetHeight())});
    for (int y = 0; y < picture.size.height; ++y) {
        for (int x = 0; x < picture.size.width; ++x) {
            Gdiplus::Color color;
            bitmap.GetPixel(x, y, &color);
            picture.At(x, y) = RGB(color.GetR(), color.GetG(), color.GetB());
        }
    }
    return picture;
}

bool WritePng(const std::wstring& path, const PixelPicture& picture) {
    StartDrawing();
    Gdiplus::Bitmap bitmap(picture.size.width, picture.size.height, PixelFormat24bppRGB);
    for (int y = 0; y < picture.size.height; ++y) {
        for (int x = 0; x < picture.size.width; ++x) {
            const COLORREF color = picture.At(x, y);
            bitmap.SetPixel(x, y, Gdiplus::Color(GetRValue(color), GetGValue(color), GetBValue(color)));
        }
    }
    // The system's encoder of that format.
    constexpr CLSID encoder{0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};
    return bitmap.Save(path.c_str(), &encoder, nullptr) == Gdiplus::Ok;
}

}  // namespace qvx::test
