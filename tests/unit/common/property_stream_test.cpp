#include "common/property_stream.h"

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

namespace qvx::property_stream {
namespace {

FontSpec SampleFont() {
    FontSpec font;
    font.face = u"Tahoma \u6F22";
    font.points = 9.75;
    font.weight = 700;
    font.italic = true;
    font.strikeThrough = true;
    font.charset = 204;
    return font;
}

std::vector<Record> Samples() {
    return {{u"On", true},
            {u"Off", false},
            {u"Long", std::int32_t{-2147483647}},
            {u"Real", 0.1},
            {u"Empty", Text()},
            {u"", Text(u"\0in the middle", 14)},
            {u"Sign\u00E9", Text(u"\U0001F600 \u6F22")},
            {u"Font", SampleFont()},
            {u"None", PropertyValue()}};
}

std::optional<std::vector<Record>> Read(const Bytes& bytes) {
    if (bytes.size() < headerSize) return std::nullopt;
    const auto header = ReadHeader(bytes);
    if (!header || header->size != bytes.size() - headerSize) return std::nullopt;
    return ReadRecords(*header, std::span(bytes).subspan(headerSize));
}

TEST(PropertyStream, EveryKindComesBack) {
    const auto read = Read(Write(Samples()));
    ASSERT_TRUE(read);
    EXPECT_EQ(Samples(), *read);
    EXPECT_TRUE(Read(Write({}))->empty());
}

// The form is for ever: streams lie in hosts' files.
TEST(PropertyStream, BytesAreTheAgreedOnes) {
    const Bytes expected{'Q', 'V', 'X', 'P', 1,   0,    1,    0,    15,  0, 0, 0,  // header: one record of 15 bytes
                         2,   0,   'N', 0,   'o', 0,                               // key
                         2,   4,   0,   0,   0,   0x78, 0x56, 0x34, 0x12};
    EXPECT_EQ(expected, Write(std::vector<Record>{{u"No", std::int32_t{0x12345678}}}));
}

TEST(PropertyStream, LengthsAreNotBelieved) {
    struct Case {
        const char* what;
        std::size_t at;  // the byte to change
        std::uint8_t to;
    };
    // One record: header 12, key length at 12, key "A" at 14, kind at 16, size at 17, value at 21.
    const Bytes good = Write(std::vector<Record>{{u"A", std::int32_t{5}}});
    ASSERT_TRUE(Read(good));
    const Case cases[] = {
        {"another magic", 0, 'q'},
        {"another version", 4, 2},
        {"fewer records than bytes", 6, 0},
        {"more records than bytes", 6, 2},
        {"a huge total", 11, 0x7F},
        {"a key beyond the end", 12, 200},
        {"a value beyond the end", 17, 5},
        {"a value of gigabytes", 20, 0x80},
        {"a value too short for its kind", 17, 3},
        {"a Boolean of four bytes", 16, 1},
        {"a real of four bytes", 16, 3},
        {"a font of four bytes", 16, 5},
    };
    for (const Case& c : cases) {
        Bytes bytes = good;
        bytes[c.at] = c.to;
        EXPECT_FALSE(Read(bytes)) << c.what;
    }
    Bytes unknown = good;
    unknown[16] = 77;
    EXPECT_EQ((std::vector<Record>{{u"A", PropertyValue()}}), Read(unknown)) << "a kind of a later version is no value";
}

// One property without a sensible value costs nothing but itself.
TEST(PropertyStream, ValuesThatNoControlCanUseReadAsNone) {
    FontSpec nameless = SampleFont();
    nameless.face.clear();
    FontSpec huge = SampleFont();
    huge.points = 1e9;
    FontSpec negative = SampleFont();
    negative.points = -1;
    for (const PropertyValue& value : {PropertyValue(nameless), PropertyValue(huge), PropertyValue(negative),
                                       PropertyValue(std::numeric_limits<double>::infinity()),
                                       PropertyValue(std::numeric_limits<double>::quiet_NaN())}) {
        const std::vector<Record> expected{{u"Bad", PropertyValue()}, {u"Good", true}};
        EXPECT_EQ(Read(Write(std::vector<Record>{{u"Bad", value}, {u"Good", true}})), expected);
    }
}

TEST(PropertyStream, HalfACharacterIsRefused) {
    Bytes odd = Write(std::vector<Record>{{u"T", Text(u"ab")}});
    odd[17] = 3;
    odd[8] = static_cast<std::uint8_t>(odd[8] - 1);
    odd.pop_back();
    EXPECT_FALSE(Read(odd));
}

TEST(PropertyStream, WhatDoesNotFitIsNotWritten) {
    EXPECT_THROW(Write(std::vector<Record>{{Text(0x10000, u'k'), true}}), std::length_error);
    EXPECT_THROW(Write(std::vector<Record>(0x10000, Record{u"k", true})), std::length_error);
    EXPECT_THROW(Write(std::vector<Record>{{u"k", Text(maximumSize / 2 + 1, u'x')}}), std::length_error);
}

}  // namespace
}  // namespace qvx::property_stream
