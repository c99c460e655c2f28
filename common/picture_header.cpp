#include "common/picture_header.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace qvx {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::int64_t longestSide = 8192;  // pixels
constexpr int deepestPixel = 32;            // bits

// Reads a little-endian number; the result is 0 beyond the end, which the callers exclude by checking sizes.
std::uint32_t Number(Bytes bytes, std::size_t at, std::size_t length) {
    std::uint32_t value = 0;
    for (std::size_t i = length; i-- > 0;) {
        value = value << 8 | (at + i < bytes.size() ? bytes[at + i] : 0u);
    }
    return value;
}

std::uint32_t BigEndian(Bytes bytes, std::size_t at) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) value = value << 8 | (at + i < bytes.size() ? bytes[at + i] : 0u);
    return value;
}

int Signed(std::uint32_t value) { return static_cast<std::int32_t>(value); }

template <std::size_t length>
bool StartsWith(Bytes bytes, const std::array<std::uint8_t, length>& signature) {
    return bytes.size() >= length && std::equal(signature.begin(), signature.end(), bytes.begin());
}

constexpr std::array<std::uint8_t, 2> bitmapSignature{'B', 'M'};
constexpr std::array<std::uint8_t, 8> pngSignature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
constexpr std::array<std::uint8_t, 4> gifSignature{'G', 'I', 'F', '8'};
constexpr std::array<std::uint8_t, 4> iconSignature{0, 0, 1, 0};
constexpr std::array<std::uint8_t, 4> cursorSignature{0, 0, 2, 0};

constexpr std::size_t fileHeaderSize = 14;  // of a bitmap
constexpr std::size_t oldInfoSize = 12;
constexpr std::size_t infoSize = 40;

// The header of a bitmap's pixels, in bitmap files and in icons.
struct BitmapInfo {
    Size extent;
    int bits = 0;  // per pixel
    std::uint32_t compression = 0;
    std::int64_t bytes = 0;  // of the header, colours included
};

constexpr std::uint32_t uncompressed = 0;
constexpr std::uint32_t runLength8 = 1;
constexpr std::uint32_t runLength4 = 2;
constexpr std::uint32_t bitFields = 3;

std::optional<BitmapInfo> ReadInfo(Bytes info) {
    const std::size_t size = Number(info, 0, 4);
    const auto colors = [](int bits, std::uint32_t used) -> std::int64_t {
        constexpr int deepestPalette = 8;
        if (bits <= 0 || bits > deepestPalette) return 0;
        const std::uint32_t all = 1u << bits;
        return used == 0 ? all : std::min(used, all);
    };
    if (size == oldInfoSize && info.size() >= oldInfoSize) {
        const int bits = Signed(Number(info, 10, 2));
        return BitmapInfo{{Signed(Number(info, 4, 2)), Signed(Number(info, 6, 2))},
                          bits,
                          uncompressed,
                          static_cast<std::int64_t>(size) + 3 * colors(bits, 0)};
    }
    if (size < infoSize || info.size() < infoSize) return std::nullopt;
    const int bits = Signed(Number(info, 14, 2));
    const std::uint32_t compression = Number(info, 16, 4);
    constexpr int masks = 12;  // bytes, after a header that has no room for them itself
    return BitmapInfo{{Signed(Number(info, 4, 4)), Signed(Number(info, 8, 4))},
                      bits,
                      compression,
                      static_cast<std::int64_t>(size) + 4 * colors(bits, Number(info, 32, 4)) +
                          (compression == bitFields && size == infoSize ? masks : 0)};
}

std::int64_t RowBytes(int width, int bits) { return (std::int64_t{width} * bits + 31) / 32 * 4; }

// Whether decoders know this kind of pixels.
bool IsKnown(const BitmapInfo& info) {
    return info.bits > 0 && info.bits <= deepestPixel && info.compression <= bitFields;
}

bool IsSane(Size extent) {
    // A bitmap of negative height is stored from the top down.
    const std::int64_t height = std::abs(std::int64_t{extent.height});
    return extent.width > 0 && extent.width <= longestSide && height > 0 && height <= longestSide;
}

bool IsPng(Bytes file) { return StartsWith(file, pngSignature); }

std::optional<Size> PngExtent(Bytes file) {
    constexpr std::size_t end = 24;
    if (!IsPng(file) || file.size() < end) return std::nullopt;
    return Size{Signed(BigEndian(file, 16)), Signed(BigEndian(file, 20))};
}

// An image of an icon is a bitmap with the mask below it, or a PNG file.
std::optional<Size> IconImageExtent(Bytes image) {
    if (IsPng(image)) return PngExtent(image);
    const auto info = ReadInfo(image);
    if (!info) return std::nullopt;
    return Size{info->extent.width, info->extent.height / 2};
}

bool IsIcon(Bytes file) { return StartsWith(file, iconSignature) || StartsWith(file, cursorSignature); }

// Calls `visit` with the bytes of each image until it returns false. Returns false when it did, or when an image is
// incomplete.
template <typename Visit>
bool ForEachIconImage(Bytes file, Visit visit) {
    constexpr std::size_t headerSize = 6;
    constexpr std::size_t entrySize = 16;
    const std::size_t count = Number(file, 4, 2);
    if (count == 0 || file.size() < headerSize + count * entrySize) return false;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t entry = headerSize + i * entrySize;
        const std::size_t length = Number(file, entry + 8, 4);
        const std::size_t offset = Number(file, entry + 12, 4);
        if (offset > file.size() || length > file.size() - offset) return false;
        if (!visit(file.subspan(offset, length))) return false;
    }
    return true;
}

bool MayDecodeBitmap(Bytes file) {
    if (file.size() < fileHeaderSize) return false;
    const auto info = ReadInfo(file.subspan(fileHeaderSize));
    const auto size = static_cast<std::int64_t>(file.size());
    if (!info || !IsSane(info->extent) || !IsKnown(*info)) return false;
    if (static_cast<std::int64_t>(fileHeaderSize) + info->bytes > size) return false;
    const std::int64_t offset = Number(file, 10, 4);
    if (info->compression == runLength8 || info->compression == runLength4) return offset < size;
    const std::int64_t height = std::abs(std::int64_t{info->extent.height});
    return offset + RowBytes(info->extent.width, info->bits) * height <= size;
}

// The mask is a bitmap with one bit per pixel after the image itself.
bool MayDecodeIconImage(Bytes image) {
    const auto extent = IconImageExtent(image);
    if (!extent || !IsSane(*extent)) return false;
    if (IsPng(image)) return true;
    const auto info = ReadInfo(image);
    if (!IsKnown(*info) || (info->compression != uncompressed && info->compression != bitFields)) return false;
    const std::int64_t row = RowBytes(extent->width, info->bits) + RowBytes(extent->width, 1);
    return info->bytes + row * std::abs(std::int64_t{extent->height}) <= static_cast<std::int64_t>(image.size());
}

bool MayDecodeIcon(Bytes file) { return ForEachIconImage(file, MayDecodeIconImage); }

}  // namespace

std::optional<Size> PictureExtent(Bytes file) {
    if (StartsWith(file, bitmapSignature)) {
        if (file.size() < fileHeaderSize) return std::nullopt;
        const auto info = ReadInfo(file.subspan(fileHeaderSize));
        return info ? std::optional(info->extent) : std::nullopt;
    }
    if (IsPng(file)) return PngExtent(file);
    if (StartsWith(file, gifSignature)) {
        constexpr std::size_t end = 10;
        if (file.size() < end) return std::nullopt;
        return Size{Signed(Number(file, 6, 2)), Signed(Number(file, 8, 2))};
    }
    if (!IsIcon(file)) return std::nullopt;
    std::optional<Size> largest;
    const bool whole = ForEachIconImage(file, [&](Bytes image) {
        const auto extent = IconImageExtent(image);
        if (extent && (!largest || extent->width > largest->width)) largest = extent;
        return extent.has_value();
    });
    return whole ? largest : std::nullopt;
}

bool MayDecodePicture(Bytes file) {
    if (StartsWith(file, bitmapSignature)) return MayDecodeBitmap(file);
    if (IsIcon(file)) return MayDecodeIcon(file);
    if (!IsPng(file) && !StartsWith(file, gifSignature)) return true;
    const auto extent = PictureExtent(file);
    return extent && IsSane(*extent);
}

}  // namespace qvx
