#include "common/text_direction.h"

#include <gtest/gtest.h>

namespace qvx {
namespace {

TEST(TextDirection, TheFirstLetterDecides) {
    struct Case {
        const char16_t* text;
        bool leftToRight;  // in surroundings of that direction
        bool rightToLeft;
    };
    const Case cases[] = {
        {u"", false, true},
        {u"123 (4.5) %", false, true},
        {u"abc", false, false},
        {u"12 abc \u05D0", false, false},
        {u"\"3\" \u0645\u0631\u062D\u0628\u0627", true, true},
        {u"\u0660\u0661", false, true},      // Arabic digits alone
        {u"\u0301 \u05D0", true, true},      // behind a combining mark
        {u"\u200F1", true, true},            // a mark of direction
        {u"\U00010900", true, true},         // Phoenician, outside the basic plane
        {u"\U0001D400", false, false},       // mathematical letters
        {u"\U0001F600 \u05D0", true, true},  // a picture has no direction
        {u"\xD83A", false, false},           // half a character
        {u"\u00D7\u00B7\u20AC \u00E9", false, false},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(c.leftToRight, ReadsRightToLeft(c.text, false)) << (&c - cases);
        EXPECT_EQ(c.rightToLeft, ReadsRightToLeft(c.text, true)) << (&c - cases);
    }
}

TEST(TextDirection, WhatLooksTheSameBothWays) {
    for (const char16_t* same : {u"", u"abc", u"Item 25", u"a (b) c", u"1,234.50", u"7"})
        EXPECT_TRUE(LooksSameBothWays(same));
    for (const char16_t* other : {u"25 items", u"abc.", u"(a)", u"-5", u"5%", u"a \u05D0 b", u"\u00E9t\u00E9", u"1..2"})
        EXPECT_FALSE(LooksSameBothWays(other));
}

}  // namespace
}  // namespace qvx
