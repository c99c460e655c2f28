#include "controls/grid/cell_formats.h"

#include <random>

#include "controls/grid/caption_list.h"
#include "controls/grid/column_totals.h"
#include "tests/unit/grid/grid_fixture.h"
#include "widgets/flexgrid/accessible_view.h"

namespace qvx::grid {
namespace {

TEST(NumberFormat, ShowsWhatItsDigitsSay) {
    const struct {
        TextView format;
        TextView text;
        const char* shown;
    } cases[] = {
        {u"0.00", u"1234.5", "1234.50"},
        {u"#,##0.00", u"1234567.895", "1,234,567.90"},
        {u"#,##0.00", u"-1234.5", "-1,234.50"},
        {u"#,##0", u"999.5", "1,000"},
        {u"#,##0.###", u"12.5000", "12.5"},
        {u"#,##0.###", u"12", "12"},
        {u"000", u"7", "007"},
        {u"0,000", u"7", "0,007"},
        {u"#", u"0.2", ""},
        {u"#.##", u".255", ".26"},
        {u"0.00", u"-0.001", "0.00"},
        {u"0.00", u" +0007 ", "7.00"},
        {u"0%", u"0.125", "13%"},
        {u"0.0 %", u"-12", "-1200.0 %"},
        {u"#,##0.00;(#,##0.00);-", u"-1234", "(1,234.00)"},
        {u"#,##0.00;(#,##0.00);-", u"0.004", "-"},
        {u"0;-0", u"0", "0"},
        {u"0;\"a;b \"0", u"-3", "a;b 3"},
        {u"\\#0 \"kg.\"", u"12", "#12 kg."},
        {u"0 kg.", u"12", "12 kg."},
        {u"0, 0", u"12", "12, "},
        {u"\"***\"", u"12", "***"},
        {u"0.00", u"99999999999999999999.995", "100000000000000000000.00"},
        {u"0.0", u"0.05", "0.1"},
        {u"0", u"1E5", "1E5"},
        {u"0.0", u"1,5", "1,5"},
        {u"0.0", u"-", "-"},
        {u"0.0", u".", "."},
        {u"0.0", u"1.2.3", "1.2.3"},
        {u"\"open", u"1", "open"},
        {u"0\\", u"1", "1\\"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.shown, Narrow(FormattedNumber(c.text, c.format, {}))) << Narrow(c.format) << " " << Narrow(c.text);
    EXPECT_EQ(u"1.234.567,50", FormattedNumber(u"1234567.5", u"#,##0.00", {u",", u"."}));
    EXPECT_EQ(u"#,##0.00\\ \\k\\g;\\(0%\\)", SheetNumberFormat(u"#,##0.00 kg;(0%)"));
    for (const TextView date : {u"dd.mm.yyyy", u"\"0\"m", u"h:n"}) EXPECT_EQ(FormatKind::date, KindOfFormat(date));
    for (const TextView number : {u"0 d", u"\"d\"", u"#", u""}) EXPECT_EQ(FormatKind::number, KindOfFormat(number));
}

// The printer of the C library rounds what is exact in binary in the same way, except for halves.
TEST(NumberFormat, RoundsAsThePrinterDoes) {
    std::mt19937 random(8);
    for (int i = 0; i < 20'000; ++i) {
        const int places = static_cast<int>(random() % 6);
        const double whole = static_cast<double>(random()) - 2'147'483'648.0;
        if (std::fmod(whole, 7) == 0) continue;  // may be a half, which the printer rounds to even
        const double value = whole / (7.0 * (1 << random() % 30));
        char text[64];
        char rounded[64];
        std::snprintf(text, sizeof text, "%.25f", value);
        std::snprintf(rounded, sizeof rounded, "%.*f", places, value);
        const std::string expected = std::strtod(rounded, nullptr) == 0 && *rounded == '-' ? rounded + 1 : rounded;
        const Text format = u"0" + (places > 0 ? u"." + Text(static_cast<std::size_t>(places), u'0') : Text());
        ASSERT_EQ(expected, Narrow(FormattedNumber(Text(text, text + std::strlen(text)), format, {}))) << text;
    }
}

TEST_F(EntryGridTest, ColumnsShowTheirFormats) {
    Fill(grid, {u"No\tQty\tPaid\tNote", u"1\t1250\t05/03/2024\t7", u"2\tmany\t\t7"});
    state.columnFormats = u"[qty]#,##0.0,[Paid]d mmm yy,[Note]x0";
    state.footer = u";Qty-0;Note-1;";
    CellFormats formats(grid, state);
    formats.Refresh({}, {});
    grid.ShowTexts(&formats);
    const auto shown = [&](int row, int col) { return Narrow(*ValueOf(grid, flexgrid::AccessiblePart{row, col})); };
    EXPECT_EQ("1,250.0", shown(1, 1));
    EXPECT_EQ("many", shown(2, 1));
    EXPECT_EQ("5 Mar 24", shown(1, 2));
    EXPECT_EQ("", shown(2, 2));
    EXPECT_EQ("1250", Narrow(grid.TextMatrix(1, 1)));
    ColumnTotals totals(grid, state, formats);
    totals.Watch(true);
    EXPECT_EQ("1,250.0 2", Narrow(totals.TextOf(1) + u" " + totals.TextOf(3))) << "a count has a unit of its own";
    EXPECT_EQ("1250", Narrow(totals.TotalOf(1)));
    grid.SetTextMatrix(0, 3, u"Qty");
    EXPECT_EQ("7.0", shown(1, 3)) << "another caption";
    grid.SetFixedCols(2);
    EXPECT_FALSE(ValueOf(grid, flexgrid::AccessiblePart{1, 1}));
    Text scratch;
    EXPECT_EQ(u"1250", grid.ShownText(1, 1, u"1250", scratch)) << "a fixed cell";
    totals.Watch(false);
    grid.ShowTexts(nullptr);
    EXPECT_EQ(u"7", *ValueOf(grid, flexgrid::AccessiblePart{1, 3}));
}

TEST(ColumnFormats, AnItemIsChangedAmongTheOthers) {
    const struct {
        TextView formats;
        TextView format;
        const char* changed;
    } cases[] = {
        {u"", u"0.0", "[Qty]0.0"},
        {u"[A]#", u"0,0", "[A]#,[Qty]0,0"},
        {u"[A]#,[QTY]0,[B],[qty]1", u"0.0", "[A]#,[QTY]0.0,[B]"},
        {u"[A]#,[QTY]0,[B]", u"", "[A]#,[B]"},
        {u"[QTY]0", u"", ""},
        {u"", u"0,[1]", "380"},
    };
    for (const auto& c : cases) {
        std::string changed;
        try {
            const Text list = WithTextForCaption(c.formats, u"Qty", c.format);
            EXPECT_EQ(TextForCaption(list, u"qty"), c.format);
            changed = Narrow(list);
        } catch (const RunTimeError& error) {
            changed = std::to_string(error.Number());
        }
        EXPECT_EQ(changed, c.changed);
    }
    EXPECT_THROW(WithTextForCaption(u"", u"a]", u"0"), RunTimeError);
    for (const TextView bad : {u"0.0", u"[A", u"A]0", u"[A]0,B]1,[", u" [A]0"})
        EXPECT_THROW(CheckCaptionList(bad), RunTimeError) << Narrow(bad);
    CheckCaptionList(u"[A],[]0,0,[B]");
}

}  // namespace
}  // namespace qvx::grid
