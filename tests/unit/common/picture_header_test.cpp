// What is let through to the system's decoders: small files that promise no more than they hold.
#include "common/picture_header.h"

#include <gtest/gtest.h>

#include <vector>

namespace qvx {
namespace {

using Bytes = std::vector<std::uint8_t>;

struct Field {
    std::uint32_t value;
    int length;
};

// The bytes of numbers, the least significant one first.
Bytes Numbers(std::initializer_list<Field> fields) {
    Bytes bytes;
    for (auto [value, length] : fields) {
        for (; length > 0; --length, value >>= 8) bytes.push_back(static_cast<std::uint8_t>(value));
    }
    return bytes;
}

Bytes operator+(Bytes first, const Bytes& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

struct Info {
    std::int32_t width = 16;
    std::int32_t height = 16;
    int bits = 24;
    std::uint32_t compression = 0;
    std::uint32_t colors = 0;
};

Bytes Describe(const Info& info) {
    const auto width = static_cast<std::uint32_t>(info.width);
    const auto height = static_cast<std::uint32_t>(info.height);
    return Numbers({{40, 4},
                    {width, 4},
                    {height, 4},
                    {1, 2},
                    {static_cast<std::uint32_t>(info.bits), 2},
                    {info.compression, 4},
                    {0, 4},
                    {0, 4},
                    {0, 4},
                    {info.colors, 4},
                    {0, 4}});
}

// With so many bytes of colours and pixels behind the description.
Bytes Bitmap(const Info& info, std::size_t rest, std::uint32_t offset = 54) {
    return Bytes{'B', 'M'} + Numbers({{0, 4}, {0, 4}, {offset, 4}}) + Describe(info) + Bytes(rest);
}

Bytes OldBitmap(std::uint32_t width, std::uint32_t height, std::uint32_t bits, std::size_t rest) {
    return Bytes{'B', 'M'} + Numbers({{0, 4}, {0, 4}, {26, 4}, {12, 4}, {width, 2}, {height, 2}, {1, 2}, {bits, 2}}) +
           Bytes(rest);
}

Bytes Png(std::uint32_t width, std::uint32_t height) {
    Bytes file{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n', 0, 0, 0, 13, 'I', 'H', 'D', 'R'};
    for (const std::uint32_t side : {width, height}) {
        for (int shift = 24; shift >= 0; shift -= 8) file.push_back(static_cast<std::uint8_t>(side >> shift));
    }
    return file + Bytes(20);
}

Bytes Icon(const std::vector<Bytes>& images, std::uint32_t kind = 1) {
    Bytes file = Numbers({{0, 2}, {kind, 2}, {static_cast<std::uint32_t>(images.size()), 2}});
    auto offset = static_cast<std::uint32_t>(6 + 16 * images.size());
    Bytes all;
    for (const Bytes& image : images) {
        const auto size = static_cast<std::uint32_t>(image.size());
        file = file + Numbers({{0x00001010, 4}, {0x00200001, 4}, {size, 4}, {offset, 4}});
        offset += size;
        all = all + image;
    }
    return file + all;
}

// A picture and its mask, as high as both.
Bytes IconImage(const Info& info, std::size_t rest) {
    Info both = info;
    both.height *= 2;
    return Describe(both) + Bytes(rest);
}

constexpr std::size_t icon32 = std::size_t{16} * 16 * 4 + std::size_t{16} * 4;

TEST(PictureHeader, LetsThroughWhatHoldsAllThatItPromises) {
    struct Case {
        const char* what;
        Bytes file;
        bool expected;
    };
    const Case cases[] = {
        {"a bitmap", Bitmap({}, 768), true},
        {"on its head", Bitmap({16, -16}, 768), true},
        {"one byte short", Bitmap({}, 767), false},
        {"a palette", Bitmap({16, 16, 8}, 1024 + 256, 54 + 1024), true},
        {"a short palette", Bitmap({16, 16, 8, 0, 2}, 8 + 256, 54 + 8), true},
        {"no room for the palette", Bitmap({1, 1, 8}, 4), false},
        {"more colours than there can be", Bitmap({16, 16, 1, 0, 0xFFFFFFFF}, 8 + 64, 54 + 8), true},
        {"packed lines", Bitmap({5, 2, 1}, 8 + 8, 54 + 8), true},
        {"masks", Bitmap({16, 16, 16, 3}, 12 + 16 * 32, 54 + 12), true},
        {"run lengths", Bitmap({16, 16, 8, 1}, 1024 + 2, 54 + 1024), true},
        {"run lengths behind the end", Bitmap({16, 16, 8, 1}, 1024, 54 + 1024), false},
        {"a kind of compression for printers", Bitmap({16, 16, 24, 5}, 1000), false},
        {"no width", Bitmap({0, 16}, 1000), false},
        {"a negative width", Bitmap({-16, 16}, 1000), false},
        {"the least height there is", Bitmap({16, -2147483647 - 1}, 1000), false},
        {"a side that fills the memory", Bitmap({0x7FFFFFFF, 1}, 1000), false},
        {"no pixels", Bitmap({16, 16, 0}, 1000), false},
        {"pixels too deep", Bitmap({16, 16, 64}, 4000), false},
        {"pixels at the end of the world", Bitmap({}, 1000, 0xFFFFFFFF), false},
        {"the old kind", OldBitmap(16, 16, 4, 48 + 16 * 8), true},
        {"the old kind, short", OldBitmap(16, 16, 4, 47), false},
        {"the old kind, no room for the palette", OldBitmap(1, 1, 8, 4), false},
        {"two letters", {'B', 'M'}, false},
        {"a cursor", Icon({IconImage({16, 16, 32}, icon32)}, 2), true},
        {"two sizes", Icon({IconImage({16, 16, 32}, icon32), Png(256, 256)}), true},
        {"no mask", Icon({IconImage({16, 16, 32}, icon32 - 1)}), false},
        {"one good and one bad", Icon({IconImage({16, 16, 32}, icon32), IconImage({0, 16, 32}, icon32)}), false},
        {"an icon of none", Icon({}), false},
        {"a packed icon", Icon({IconImage({16, 16, 8, 1}, 4000)}), false},
        {"a huge picture in an icon", Icon({Png(0x7FFFFFFF, 0x7FFFFFFF)}), false},
        {"png", Png(16, 16), true},
        {"huge png", Png(100000, 100000), false},
        {"png of no width", Png(0, 16), false},
        {"gif", {'G', 'I', 'F', '8', '9', 'a', 16, 0, 16, 0}, true},
        {"gif of no height", {'G', 'I', 'F', '8', '9', 'a', 16, 0, 0, 0}, false},
        {"half a gif", {'G', 'I', 'F', '8', '9'}, false},
        {"nothing", {}, true},
        {"something else", {1, 2, 3}, true},
    };
    for (const Case& c : cases) EXPECT_EQ(MayDecodePicture(c.file), c.expected) << c.what;
}

TEST(PictureHeader, TellsTheExtent) {
    EXPECT_EQ(PictureExtent(Bitmap({20, 10}, 1000)), (Size{20, 10}));
    EXPECT_EQ(PictureExtent(Png(256, 128)), (Size{256, 128}));
    EXPECT_EQ(PictureExtent(Icon({IconImage({16, 16, 32}, icon32), Png(48, 40)})), (Size{48, 40}));
    EXPECT_EQ(PictureExtent(Icon({IconImage({16, 16, 32}, icon32)})), (Size{16, 16}));
}

// Cut anywhere, a file is refused or taken, and nothing is read behind its end.
TEST(PictureHeader, MayEndAnywhere) {
    for (const Bytes& file : {Bitmap({16, 16, 8}, 1024 + 256, 54 + 1024), OldBitmap(16, 16, 4, 48 + 128),
                              Icon({IconImage({16, 16, 32}, icon32), Png(48, 40)})}) {
        for (std::size_t length = 0; length < file.size(); ++length) {
            const Bytes part(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(length));
            // What cannot be told by its first bytes is nobody's business here.
            const bool known = length >= 4;
            EXPECT_FALSE(known && length < 40 && MayDecodePicture(part)) << length;
            EXPECT_FALSE(length < 18 && PictureExtent(part)) << length;
        }
    }
}

}  // namespace
}  // namespace qvx
