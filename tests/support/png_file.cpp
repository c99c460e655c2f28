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

class Session {
  public:
    Session() {
        const Gdiplus::GdiplusStartupInput input;
        started_ = Gdiplus::GdiplusStartup(&token_, &input, nullptr) == Gdiplus::Ok;
    }
    ~Session() {
        if (started_) Gdiplus::GdiplusShutdown(token_);
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

  private:
    ULONG_PTR token_ = 0;
    bool started_ = false;
};

}  // namespace

std::optional<PixelPicture> ReadPng(const std::wstring& path) {
    const Session session;
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
    const Session session;
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
