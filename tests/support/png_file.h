// Pictures that are stored beside the tests.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "common/geometry.h"

namespace qvx::test {

struct PixelPicture {
    Size size;
    std::vector<COLORREF> pixels;  // row by row from the top

    explicit PixelPicture(Size size_ = {})
        : size(size_), pixels(static_cast<std::size_t>(size_.width * size_.height)) {}
    COLORREF& At(int x, int y) { return pixels[static_cast<std::size_t>(y * size.width + x)]; }
    COLORREF At(int x, int y) const { return pixels[static_cast<std::size_t>(y * size.width + x)]; }
};

// Reads a picture; nothing when there is no such file, or when it is not a picture.
std::optional<PixelPicture> ReadPng(const std::wstring& path);
bool WritePng(const std::wstring& path, const PixelPicture& picture);

}  // namespace qvx::test
