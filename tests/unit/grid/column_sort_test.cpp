#include "controls/grid/column_sort.h"

#include <gtest/gtest.h>

#include "common/text_compare.h"
#include "tests/unit/grid/grid_fixture.h"

namespace qvx::grid {
namespace {

using flexgrid::Shown;

// The key of a text by its folded characters.
void AppendFolded(TextView text, std::string& key) {
    for (const char16_t c : FoldedText(text)) {
        key += static_cast<char>(c >> 8);
        key += static_cast<char>(c);
    }
}

class ColumnSortTest : public EntryGridTest {
  protected:
    ColumnSortTest() {
        state.columnsDataType = u";Qty-1;Code-0;Day-2;";
        state.dateFormat = u"DD/MM/YYYY";
        help.dates.order = ShortDateOrder::monthDayYear;  // the system's own, which DateFormat overrules
    }
    bool Sort(TextView columns) { return SortRows(grid, state, history, ReadSortColumns(grid, columns).value(), help); }
    // The numbers in the first column.
    std::string Order() const {
        std::string order;
        for (int row = grid.FixedRows(); row < grid.Rows(); ++row) order += Narrow(grid.TextMatrix(row, 0));
        return order;
    }

    SortHelp help{AppendFolded, {}, {}};
};

TEST_F(ColumnSortTest, ByTypeAndDirectionWithBlanksLast) {
    struct Case {
        TextView caption;
        std::vector<TextView> cells;
        const char* ascending;
        const char* descending;
    };
    const Case cases[] = {
        {u"Name",
         {u"b", u"\u00E9", u"A", u" ", u"a", u"", u"longer than a rank, 1", u"longer than a rank, 0"},
         "35187246",
         "27813546"},
        {u"Qty", {u"10", u"9", u"-1", u"", u"0", u"1e3", u"-10", u"9.0"}, "73528164", "61285374"},
        {u"Code", {u"10", u"9", u"x", u"  ", u"0", u"010"}, "352164", "162354"},
        {u"Day", {u"05/03/2024", u"04/12/2023", u"never", u"13/01/2024", u"", u"05/03/2024"}, "241635", "164235"},
        {u"Qty", {u"1"}, "1", "1"},
        {u"Qty", {}, "", ""},
    };
    for (const Case& c : cases) {
        for (const bool descending : {false, true}) {
            std::vector<Text> rows{u"No\t" + Text(c.caption)};
            for (const TextView cell : c.cells)
                rows.push_back(Text(1, static_cast<char16_t>(u'0' + rows.size())) + u"\t" + Text(cell));
            if (c.cells.empty()) rows.push_back(u"0");
            Fill(grid, {rows.begin(), rows.end()});
            if (c.cells.empty()) grid.SetRows(1);
            const Text list = u";" + Text(c.caption) + (descending ? u"-1;" : u"-0;");
            EXPECT_TRUE(Sort(list));
            EXPECT_EQ(descending ? c.descending : c.ascending, Order()) << Narrow(list);
            EXPECT_EQ(Narrow(list), Narrow(SortColumnsText(grid, grid.SortMarks())));
        }
    }
}

TEST_F(ColumnSortTest, DatesAreReadAsDateFormatWritesThem) {
    struct Case {
        TextView format, first, second;  // by time
    };
    const Case cases[] = {
        {u"MM/DD/YYYY", u"03/11/2024", u"04/10/2024"},
        {u"dd.mm.yy", u"11.03.24", u"10.04.24"},
        {u"YYYY-MM-DD", u"2024-03-11", u"2024-04-10"},
        {u"MM/YYYY", u"12/2023", u"01/2024"},
        {u"MM/YY", u"11/12", u"10/13"},
        {u"DD-MMM-YYYY hh:mm", u"1-Mar-2024 9:30", u"1-Mar-2024 10:00"},
    };
    for (const Case& c : cases) {
        state.dateFormat = c.format;
        const Text later = u"1\t" + Text(c.second);
        const Text sooner = u"2\t" + Text(c.first);
        Fill(grid, {u"No\tDay", later, sooner});
        Sort(u";Day-0;");
        EXPECT_EQ("21", Order()) << Narrow(c.format);
    }
}

TEST_F(ColumnSortTest, SeveralColumnsAndEqualRows) {
    Fill(grid, {u"No\tName\tQty", u"1\tb\t1", u"2\ta\t2", u"3\tB\t2", u"4\ta\t1", u"5\ta\t2"});
    const std::pair<TextView, const char*> cases[] = {
        {u";Name-0;", "24513"},       {u";Name-1;", "13245"},
        {u";Name-0;Qty-1;", "25431"}, {u";qty-1;NAME-0;Qty-0;", "25341"},
        {u";Qty-0;No-1;", "41532"},   {u";No-0;", "12345"},
    };
    for (const auto& [list, order] : cases) {
        Sort(u";No-0;");
        Sort(list);
        EXPECT_EQ(order, Order()) << Narrow(list);
    }
    for (const TextView list : {u"Qty-0", u";", u";Qty;", u";Qty-2;", u";Qty-0", u";-0;", u";Rate-0;", u";Qty-0;;"})
        EXPECT_FALSE(ReadSortColumns(grid, list)) << Narrow(list);
}

TEST_F(ColumnSortTest, ClicksReverseAndAdd) {
    Fill(grid, {u"No\tName\tQty", u"1\tb\t1", u"2\ta\t2"});
    const std::tuple<int, bool, const char*> clicks[] = {
        {1, false, ";Name-0;"},      {1, false, ";Name-1;"}, {2, true, ";Name-1;Qty-0;"},
        {1, true, ";Name-0;Qty-0;"}, {2, false, ";Qty-1;"},  {1, false, ";Name-0;"},
    };
    for (const auto& [col, add, list] : clicks) {
        const SortColumns columns = ClickedSortColumns(grid, col, add);
        EXPECT_EQ(list, Narrow(SortColumnsText(grid, columns)));
        SortRows(grid, state, history, columns, help);
    }
    Sort(u";Name-0;Qty-1;");
    grid.SetColPosition(1, 2);
    EXPECT_EQ(";Name-0;Qty-1;", Narrow(SortColumnsText(grid, grid.SortMarks()))) << "the marks move with their columns";
    grid.Sort(flexgrid::GridSort::stringAscending);
    EXPECT_TRUE(grid.SortMarks().empty()) << "another sort";
}

TEST_F(ColumnSortTest, EverythingGoesWithItsRowAndComesBack) {
    Fill(grid, {u"No\tName\tQty", u"1\tc\t3", u"2\tb\t1", u"3\ta\t2"});
    state.autoRecordNumber = true;
    grid.SetRowHeight(1, 600);
    grid.SetRowData(1, 7);
    grid.SetForeColorAndBoldOf(1, 1, 0xFF, true);
    grid.Select(2, 1, 3, 2);
    const std::string before = Shown(grid);
    Sort(u";Name-0;");
    EXPECT_EQ("No,Name,Qty/1,a,2/2,b,1/3,c,3", Shown(grid));
    EXPECT_EQ(600, grid.RowHeight(3));
    EXPECT_EQ(7, grid.RowData(3));
    EXPECT_EQ(0xFFU, grid.FormatOf(3, 1)->foreColor);
    EXPECT_EQ("2,1", Current());
    EXPECT_EQ(2, grid.RowSel());
    Sort(u";Qty-1;");
    EXPECT_EQ("No,Name,Qty/1,c,3/2,a,2/3,b,1", Shown(grid));
    EXPECT_EQ("3,1", Current());
    history.Undo(state);
    EXPECT_EQ("No,Name,Qty/1,a,2/2,b,1/3,c,3", Shown(grid));
    EXPECT_EQ(";Name-0;", Narrow(SortColumnsText(grid, grid.SortMarks())));
    history.Undo(state);
    EXPECT_EQ(before, Shown(grid));
    EXPECT_EQ("2,1", Current()) << "the cursor stays on its record";
    EXPECT_TRUE(grid.SortMarks().empty());
    EXPECT_EQ(600, grid.RowHeight(1));
    history.Redo(state);
    history.Redo(state);
    EXPECT_EQ("No,Name,Qty/1,c,3/2,a,2/3,b,1", Shown(grid));
    EXPECT_FALSE(history.CanRedo());
}

TEST_F(ColumnSortTest, EndedItChangesNothing) {
    Fill(grid, {u"No\tName", u"2\tb", u"1\ta"});
    grid.SetRows(200'000);
    grid.SetTextMatrix(199'999, 1, u"0");
    int calls = 0;
    help.goOn = [&] { return ++calls < 3; };
    EXPECT_FALSE(Sort(u";Name-0;"));
    EXPECT_EQ(u"b", grid.TextMatrix(1, 1));
    EXPECT_FALSE(history.CanUndo());
    EXPECT_TRUE(grid.SortMarks().empty());
    help.goOn = [] { return true; };
    EXPECT_TRUE(Sort(u";Name-0;"));
    EXPECT_EQ(u"0", grid.TextMatrix(1, 1));
}

}  // namespace
}  // namespace qvx::grid
