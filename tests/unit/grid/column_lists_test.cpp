#include "controls/grid/column_lists.h"

#include <gtest/gtest.h>

#include <limits>

#include "controls/grid/column_index.h"
#include "tests/unit/grid/grid_fixture.h"

namespace qvx::grid {
namespace {

TEST(ColumnLists, AnItemIsListedBetweenItsTwoSemicolonsOnly) {
    const struct {
        TextView list;
        TextView caption;
        bool listed;
    } cases[] = {
        {u";Code;Qty;Rate;", u"Code", true},
        {u";Code;Qty;Rate;", u"Qty", true},
        {u";qty;", u"QTY", true},
        {u";Qty;", u"Qt", false},
        {u";Qty;", u"ty", false},
        {u"Qty;Rate;", u"Qty", false},
        {u"Qty;Rate;", u"Rate", true},
        {u";Qty;Rate", u"Rate", false},
        {u"", u"", false},
        {u";", u"", false},
        {u";;", u"", true},
        {u";Qty;;Rate;", u"", true},
        {u";Qty;Rate;", u"", false},
        {u"; Qty ;", u"Qty", false},
        {u";\u00C9t\u00E9;", u"\u00E9T\u00C9", true},
        {u";\u0416;", u"\u0436", true},
        // A caption with a semicolon of its own matches across two items.
        {u";Qty;Rate;", u"Qty;Rate", true},
    };
    for (const auto& c : cases)
        EXPECT_EQ(IsListedColumn(c.list, c.caption), c.listed) << Narrow(c.caption) << " in " << Narrow(c.list);
}

TEST(ColumnLists, ANumberIsPartOfItsItem) {
    const struct {
        TextView list;
        int number;
    } cases[] = {
        {u";Qty-1;Name-30;", 30},
        {u";NAME-007;", 7},
        {u";Name-30", 0},
        {u"Name-30;", 0},
        {u";Name 2-30;Name-;Name-x;Name-3 ;Name--3;Name-5;Name-6;", 5},
        {u";Name-99999999999999999999;", std::numeric_limits<int>::max()},
        {u"", 0},
    };
    for (const auto& c : cases) EXPECT_EQ(ColumnNumber(c.list, u"Name"), c.number) << Narrow(c.list);
}

TEST(ColumnLists, ACodeIsPartOfItsItem) {
    struct Case {
        TextView list;
        TextView caption;
        int code;
        bool has;
    };
    const Case cases[] = {
        {u";Qty-1;Date-2;", u"date", 2, true}, {u";Qty-1;Date-2;", u"Qty", 2, false},
        {u";Qty-1;Qty-0;", u"Qty", 0, true},   {u";Qty-1;Qty-0;", u"Qty", 1, true},
        {u"Qty-1;", u"Qty", 1, false},         {u";Qty-1", u"Qty", 1, false},
        {u";Qty-12;", u"Qty", 1, false},       {u";Qty - 1;", u"Qty", 1, false},
        {u";A-1-2;", u"A-1", 2, true},         {u";-1;", u"", 1, true},
    };
    for (const Case& c : cases)
        EXPECT_EQ(HasColumnCode(c.list, c.caption, c.code), c.has)
            << Narrow(c.caption) << "-" << c.code << " in " << Narrow(c.list);
}

TEST(ColumnLists, ColumnsGoByTheirCaptionInTheFirstRow) {
    flexgrid::Grid grid;
    Fill(grid, {u"No\tQty\tQty", u"1\tRate\tx"});
    EXPECT_TRUE(IsListedColumn(grid, u";qty;", 1));
    EXPECT_TRUE(IsListedColumn(grid, u";qty;", 2));
    EXPECT_FALSE(IsListedColumn(grid, u";Rate;", 1));
    EXPECT_TRUE(HasColumnCode(grid, u";Qty-2;", 2, 2));
    EXPECT_THROW(IsListedColumn(grid, u";qty;", -1), RunTimeError);
    EXPECT_THROW(IsListedColumn(grid, u";qty;", 6), RunTimeError);
    // Without any row there is nothing above the columns.
    grid.SetFixedRows(0);
    grid.SetRows(0);
    EXPECT_FALSE(IsListedColumn(grid, u";qty;", 1));
    EXPECT_TRUE(IsListedColumn(grid, u";;", 1));
    EXPECT_THROW(IsListedColumn(grid, u";;", 3), RunTimeError);
    EXPECT_EQ(Narrow(RefreshColIndex(grid).stringFormat), "[],[1],[2]");
}

TEST(ColumnIndexTest, TakenCaptionsGetTheFirstFreeSuffix) {
    const std::pair<TextView, std::string> cases[] = {
        {u"Code\tName\tQty", "[Code],[Name],[Qty]"},      {u"Qty\tqty\tQTY", "[Qty],[qty1],[QTY2]"},
        {u"Qty\tQty1\tQty", "[Qty],[Qty1],[Qty2]"},       {u"Qty\tQty\tQty1", "[Qty],[Qty1],[Qty11]"},
        {u"A\tB\tA\tB\tA", "[A],[B],[A1],[B1],[A2]"},     {u"1\t\t", "[1],[],[2]"},
        {u"Q\tq1\tQ\tq\tQ1", "[Q],[q1],[Q2],[q3],[Q11]"},
    };
    flexgrid::Grid grid;
    for (const auto& [captions, stringFormat] : cases) {
        Fill(grid, {captions});
        const ColumnIndex index = RefreshColIndex(grid);
        EXPECT_EQ(Narrow(index.stringFormat), stringFormat);
        std::string entries;
        int next = 0;
        for (const auto& [caption, col] : index.entries) {
            EXPECT_EQ(col, next++);
            entries += (col > 0 ? ",[" : "[") + Narrow(caption) + "]";
        }
        EXPECT_EQ(entries, stringFormat);
    }
    grid.SetFixedCols(0);
    grid.SetCols(0);
    EXPECT_TRUE(RefreshColIndex(grid).stringFormat.empty() && RefreshColIndex(grid).entries.empty());
}

}  // namespace
}  // namespace qvx::grid
