// Colours as hosts pass them: 0x00BBGGRR, or with the high bit set the index of a system colour in the low byte.
#pragma once

#include <cstdint>

namespace qvx {

using OleColor = std::uint32_t;

// Red, green and blue from 0 to 255 each.
constexpr OleColor Rgb(unsigned red, unsigned green, unsigned blue) { return red | green << 8 | blue << 16; }

namespace colors {
constexpr OleColor windowBackground = 0x80000005;
constexpr OleColor windowFrame = 0x80000006;
constexpr OleColor windowText = 0x80000008;
constexpr OleColor highlight = 0x8000000D;
constexpr OleColor highlightText = 0x8000000E;
constexpr OleColor buttonFace = 0x8000000F;
constexpr OleColor buttonShadow = 0x80000010;
constexpr OleColor grayText = 0x80000011;
constexpr OleColor buttonText = 0x80000012;
constexpr OleColor buttonHighlight = 0x80000014;
constexpr OleColor darkShadow3d = 0x80000015;
constexpr OleColor light3d = 0x80000016;
constexpr OleColor infoText = 0x80000017;
constexpr OleColor infoBackground = 0x80000018;
}  // namespace colors

}  // namespace qvx
