#include "controls/grid/user_layout.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/unit/grid/grid_fixture.h"

namespace qvx::grid {
namespace {

TEST(UserLayout, ReadsWhatItWrites) {
    std::mt19937 random(5);
    const Text pieces[] = {u"Qty", u"%", u"|", u"=", u"*sort", u" ", u"\u20AC\xD83D\xDE00", u";", u"%7C"};
    const auto any = [&] {
        Text text;
        for (unsigned count = random() % 4; count > 0; --count) text += pieces[random() % std::size(pieces)];
        return text;
    };
    for (int i = 0; i < 500; ++i) {
        UserLayout layout{{}, any(), any()};
        for (unsigned count = random() % 5; count > 0; --count)
            layout.columns.push_back({any(), static_cast<int>(random() % 3000)});
        EXPECT_EQ(layout, ReadLayout(WriteLayout(layout))) << Narrow(WriteLayout(layout));
    }
    EXPECT_EQ(u"1|A%7C=5|*sort=;A%7C-0;", WriteLayout({{{u"A|", 5}}, u";A|-0;", u""}));
}

TEST(UserLayout, RefusesWhatIsNone) {
    for (const TextView text : {u"", u"2|A=5", u"1|A", u"1|A=", u"1|A=-5", u"1|A=x", u"1|%=5", u"1|%4=5", u"1|%G0=5",
                                u"1|*sort", u"1|*sort=%", u"1||A=5", u"|1"})
        EXPECT_FALSE(ReadLayout(text)) << Narrow(text);
    const auto layout = ReadLayout(u"1|*zoom=3|A=99999999999|");
    ASSERT_TRUE(layout);
    EXPECT_EQ(1'000'000, layout->columns.at(0).width);
}

TEST_F(EntryGridTest, ALayoutFindsItsColumnsByCaption) {
    const struct {
        TextView layout;
        const char* shown;
        const char* widths;
    } cases[] = {
        {u"1", "No,A,B,B,C,X", "960 960 960 960 960 0 "},
        {u"1|C=100|b=200|A=300", "No,C,B,A,B,X", "960 100 200 300 960 0 "},
        {u"1|C=100|X=70|gone=5|No=50|B=1|B=2", "No,C,X,B,B,A", "50 100 0 1 2 960 "},
        {u"1|A=0", "No,A,B,B,C,X", "960 0 960 960 960 0 "},
    };
    state.inVisibleColumns = u";X;";
    for (const auto& c : cases) {
        flexgrid::Grid own;
        Fill(own, {u"No\tA\tB\tB\tC\tX"});
        own.SetFixedCols(1);
        own.SetColWidth(5, 0);
        const auto columns = ReadLayout(c.layout)->columns;
        ApplyLayoutColumns(own, state, columns, 1, [&](int from, int to) { own.SetColPosition(from, to); });
        EXPECT_EQ(c.shown, flexgrid::Shown(own)) << Narrow(c.layout);
        std::string widths;
        for (const auto& column : LayoutColumns(own)) widths += std::to_string(column.width) + " ";
        EXPECT_EQ(c.widths, widths) << Narrow(c.layout);
        // As long as nothing changes, a layout that is set again changes nothing.
        ApplyLayoutColumns(own, state, LayoutColumns(own), 1, [](int, int) { ADD_FAILURE(); });
    }
}

}  // namespace
}  // namespace qvx::grid
