// The claims that a picture file makes about itself in its header. They are checked before any system decoder gets the
// file: files come from anywhere, and a few bytes can ask for gigabytes.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "common/geometry.h"

namespace qvx {

// Returns the extent in pixels of a bitmap (.bmp), icon or cursor (the largest image in it), PNG or GIF file, exactly
// as the file claims it, which may be nonsense. Returns nullopt for other files, and for those that end before the
// extent.
std::optional<Size> PictureExtent(std::span<const std::uint8_t> file);

// Returns whether a decoder may have the file. It may not when the file is in one of the formats above and is empty,
// larger than any picture for a button or a menu needs to be, or shorter than its header promises. Other formats pass.
bool MayDecodePicture(std::span<const std::uint8_t> file);

}  // namespace qvx
