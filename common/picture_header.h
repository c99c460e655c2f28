// What a picture file says of itself at its beginning, looked at before any system decoder is let near it: files come
// from anywhere, and a few bytes can ask for gigabytes.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "common/geometry.h"

namespace qvx {

// The extent in pixels of a bitmap (.bmp), icon or cursor (the largest image in it), PNG or GIF file, exactly as the
// file says, which may be nonsense. Nothing for other files, and for those that end before they say it.
std::optional<Size> PictureExtent(std::span<const std::uint8_t> file);

// Whether a decoder may have the file: not when it is one of the formats above and is empty or larger than any picture
// for a button or a menu has reason to be, or holds less than it promises. Other formats pass.
bool MayDecodePicture(std::span<const std::uint8_t> file);

}  // namespace qvx
