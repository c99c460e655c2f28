#include "controls/grid/clipboard_text.h"

#include <gtest/gtest.h>

#include "tests/support/clipboard_table.h"
#include "tests/unit/grid/grid_fixture.h"

namespace qvx::grid {
namespace {

TEST(ClipboardText, ReadsWhatProgramsWrite) {
    const struct {
        const char16_t* text;
        Table cells;
    } cases[] = {
        {u"", {{u""}}},
        {u"a", {{u"a"}}},
        {u"a\tb\r\nc\td\r\n", {{u"a", u"b"}, {u"c", u"d"}}},
        {u"a\nb\rc", {{u"a"}, {u"b"}, {u"c"}}},
        {u"a\r\n", {{u"a"}}},
        {u"a\n\n", {{u"a"}, {u""}}},
        {u"\r\n", {{u""}}},
        {u"\n\r", {{u""}, {u""}}},
        {u"a\t", {{u"a", u""}}},
        {u"\t\r\n", {{u"", u""}}},
        {u"a\tb\tc\r\nd\r\ne\tf", {{u"a", u"b", u"c"}, {u"d"}, {u"e", u"f"}}},
        {u"\"a\tb\"\tc", {{u"a\tb", u"c"}}},
        {u"\"two\r\nlines\"\r\nnext", {{u"two\r\nlines"}, {u"next"}}},
        {u"\"say \"\"so\"\"\"", {{u"say \"so\""}}},
        {u"\"\"", {{u""}}},
        {u"\"\"\"\"", {{u"\""}}},
        // Quotes that are just that.
        {u"5\" pipe\t3\"", {{u"5\" pipe", u"3\""}}},
        {u"\"so\" he said\tb", {{u"\"so\" he said", u"b"}}},
        {u"\"open\tb\r\nc", {{u"\"open", u"b"}, {u"c"}}},
        {u"\"", {{u"\""}}},
        {u"\"\"\"", {{u"\"\"\""}}},
        {u"a\"b\tc\"", {{u"a\"b", u"c\""}}},
    };
    for (const auto& test : cases) EXPECT_EQ(test.cells, Read(test.text)) << Narrow(test.text);
}

TEST(ClipboardText, WritesWhatItReads) {
    const struct {
        Table cells;
        const char16_t* text;
    } cases[] = {
        {{{u"a"}}, u"a"},
        {{{u""}}, u""},
        {{{u"a", u"b"}, {u"", u"d"}}, u"a\tb\r\n\td\r\n"},
        {{{u"a"}, {u""}}, u"a\r\n\r\n"},
        {{{u"5\" pipe"}}, u"\"5\"\" pipe\""},
        {{{u"a\tb", u"c\nd"}}, u"\"a\tb\"\t\"c\nd\"\r\n"},
        {{{u"\x20AC\xD83D\xDE00"}}, u"\x20AC\xD83D\xDE00"},
    };
    for (const auto& test : cases) {
        EXPECT_EQ(test.text, Written(test.cells));
        EXPECT_EQ(test.cells, Read(test.text)) << Narrow(test.text);
    }
}

// Quotes without an end, in every cell and in every arrangement, must not have each other scanned again and again.
// A search that began anew at every quote would never come to the end of these.
TEST(ClipboardText, HostileQuotesAreReadOnce) {
    for (const TextView piece : {u"\"", u"\"a\t", u"\"\"\ta", u"\"a\r\n\"\"", u"\"\"a\"\t", u"\"\"\"\t"}) {
        Text text;
        while (text.size() < 1'000'000) text += piece;
        const ClipboardCells cells(text);
        EXPECT_GE(cells.Rows(), 1u);
    }
}

}  // namespace
}  // namespace qvx::grid
