#include "common/text_compare.h"

#include <gtest/gtest.h>

#include "common/text.h"

namespace qvx {
namespace {

TEST(FoldCase, CoversUnicode) {
    const struct {
        char32_t character;
        char32_t folded;
    } cases[] = {
        {U'A', U'a'},       {U'Z', U'z'},       {U'[', U'['},         {U'a', U'a'},     {0xC4, 0xE4},
        {0xD7, 0xD7},       {0xDE, 0xFE},       {0xDF, 0xDF},         {0xB5, 0x3BC},    {0x178, 0xFF},
        {0x17F, U's'},      {0x130, 0x130},     {0x131, 0x131},       {0x100, 0x101},   {0x12F, 0x12F},
        {0x391, 0x3B1},     {0x3C2, 0x3C3},     {0x42F, 0x44F},       {0x1E9E, 0xDF},   {0x1F88, 0x1F80},
        {0x2126, 0x3C9},    {0x212A, U'k'},     {0x13A0, 0x13A0},     {0xAB70, 0x13A0}, {0xFF21, 0xFF41},
        {0x10400, 0x10428}, {0x1E900, 0x1E922}, {0x10FFFF, 0x10FFFF},
    };
    for (const auto& c : cases)
        EXPECT_EQ(FoldCase(c.character), c.folded) << std::hex << static_cast<unsigned>(c.character);
}

TEST(CompareTextNoCase, OrdersByFoldedCharacters) {
    const struct {
        TextView first;
        TextView second;
        int order;
    } cases[] = {
        {u"", u"", 0},
        {u"a", u"", 1},
        {u"abc", u"ABC", 0},
        {u"B", u"a", 1},
        {u"ab", u"abc", -1},
        {u"ÄÖ", u"äö", 0},
        {u"\U00010400x", u"\U00010428X", 0},
        {u"\U00010400", u"\uFFFD", 1},       // by character, not by surrogate
        {u"\xD801", u"\xD801", 0},           // a lone surrogate is itself
        {u"a\xD801", u"a\xD801\xDC00", -1},  // and sorts before what surrogates stand for
        {u"straße", u"strasse", 1},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(CompareTextNoCase(c.first, c.second), c.order);
        EXPECT_EQ(CompareTextNoCase(c.second, c.first), -c.order);
        EXPECT_EQ(EqualNoCase(c.first, c.second), c.order == 0);
        EXPECT_EQ(FoldedText(c.first) == FoldedText(c.second), c.order == 0);
    }
}

TEST(FindNoCase, FindsTheFirstPlace) {
    const struct {
        TextView text;
        TextView wanted;
        std::size_t at;
    } cases[] = {
        {u";Qty;Rate;", u";rate;", 4},
        {u";Qty;Rate", u";RATE;", Text::npos},
        {u";a;;b;", u";;", 2},
        {u"aab", u"AB", 1},
        {u"", u"", 0},
        {u"abc", u"", 0},
        {u"", u"a", Text::npos},
        {u"ab", u"abc", Text::npos},
        {u"grüßE", u"ÜSSE", Text::npos},
        {u"\U00010428;", u";", 2},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(FindNoCase(c.text, c.wanted), c.at);
        EXPECT_EQ(ContainsNoCase(c.text, c.wanted), c.at != Text::npos);
    }
}

TEST(StartsWithNoCase, ComparesTheFront) {
    EXPECT_TRUE(StartsWithNoCase(u"Bananas", u""));
    EXPECT_TRUE(StartsWithNoCase(u"Éclair", u"éC"));
    EXPECT_FALSE(StartsWithNoCase(u"ba", u"ban"));
    EXPECT_FALSE(StartsWithNoCase(u"aba", u"ba"));
}

}  // namespace
}  // namespace qvx
