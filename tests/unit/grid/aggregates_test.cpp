#include "controls/grid/aggregates.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "common/number_text.h"
#include "common/run_time_error.h"
#include "controls/grid/column_totals.h"
#include "controls/grid/row_commands.h"
#include "tests/unit/flexgrid/grid_texts.h"
#include "tests/unit/grid/grid_fixture.h"

namespace qvx::grid {
namespace {

using flexgrid::ErrorOf;

flexgrid::Grid& Sample(flexgrid::Grid& grid) {
    Fill(grid, {u"99\t99\t99\tQty\tRate\tAmount", u"1\tx\t10\t2\t2.5\told", u"2\ty\t\t3\t1\told",
                u"3\tz\tabc\t\t7\told", u"4\t\t2.5\t1,250\t12 kg\told", u"5\t\u0416 1\t&HFF\t-4\t.5\told"});
    return grid;
}

TEST(Sums, RowsAndColumns) {
    flexgrid::Grid grid;
    Sample(grid);
    struct {
        bool ofRow;
        int index;
        double sum;
    } const cases[] = {
        {false, 0, 15},     // a fixed column when it is asked for
        {false, 1, 0},      // letters
        {false, 2, 267.5},  // nothing, a prefix, half numbers
        {false, 3, 2},      // a comma ends a number
        {false, 4, 23},     // and so does a unit
        {true, 0, 198},     // of a header, behind the fixed column
        {true, 1, 14.5},    // the record number is not added
        {true, 5, 251.5},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.ofRow ? SumOfRow(grid, c.index) : SumOfColumn(grid, c.index), c.sum) << c.ofRow << " " << c.index;
    for (const int index : {-1, 6}) {
        EXPECT_EQ(ErrorOf([&] { SumOfColumn(grid, index); }), 381);
        EXPECT_EQ(ErrorOf([&] { SumOfRow(grid, index); }), 381);
    }
    grid.SetFixedRows(5);
    EXPECT_EQ(SumOfColumn(grid, 3), -4);
    grid.SetFixedRows(0);
    EXPECT_EQ(SumOfColumn(grid, 0), 99 + 15);
    grid.SetRows(0);
    EXPECT_EQ(SumOfColumn(grid, 3), 0);
    EXPECT_EQ(SumOfColumn(grid, 77), 0) << "no cell is read";
    EXPECT_EQ(SumOfProducts(grid, 77, std::vector{88}), 0);
}

TEST(Products, OfEachRowAndTogether) {
    struct {
        const char* name;
        int col2Set;
        std::vector<int> columns;
        double total;
        const char* column5;
    } const cases[] = {
        {"nothing is written", -9, {3, 4}, 5 + 3 + 0 + 12 - 2, "old old old old old"},
        {"each row's product", 5, {3, 4}, 18, "5 3 0 12 -2"},
        {"one factor", 5, {4}, 23, "2.5 1 7 12 0.5"},
        {"a factor twice", 5, {4, 4}, 6.25 + 1 + 49 + 144 + 0.25, "6.25 1 49 144 0.25"},
        {"three factors, the last without numbers", 5, {3, 4, 1}, 0, "0 0 0 0 0"},
    };
    for (const auto& c : cases) {
        flexgrid::Grid grid;
        Sample(grid);
        EXPECT_EQ(SumOfProducts(grid, c.col2Set, c.columns), c.total) << c.name;
        std::string column;
        for (int row = 1; row < grid.Rows(); ++row) column += (row > 1 ? " " : "") + Narrow(grid.TextMatrix(row, 5));
        EXPECT_EQ(column, c.column5) << c.name;
        EXPECT_EQ(grid.TextMatrix(0, 5), u"Amount");
    }
}

// A column that is written is read before, and where it is among the factors it serves the next row only if that is
// another cell.
TEST(Products, IntoAFactor) {
    flexgrid::Grid grid;
    Sample(grid);
    EXPECT_EQ(SumOfProducts(grid, 4, std::vector{3, 4}), 18);
    EXPECT_EQ(grid.TextMatrix(1, 4), u"5");
    EXPECT_EQ(SumOfProducts(grid, 4, std::vector{3, 4}), 10 + 9 + 0 + 12 + 8);
}

TEST(Products, ColumnsThatAreNotThere) {
    flexgrid::Grid grid;
    Sample(grid);
    for (const auto& [col2Set, col] : {std::pair{5, 6}, {5, -1}, {6, 3}})
        EXPECT_EQ(ErrorOf([&, at = col2Set, factor = col] { SumOfProducts(grid, at, std::vector{3, factor}); }), 381);
    EXPECT_EQ(grid.TextMatrix(1, 5), u"old");
}

TEST(Products, BeyondWhatADoubleHolds) {
    flexgrid::Grid grid;
    Fill(grid, {u"N\tA\tB", u"1\t1E200\t1E200", u"2\t1E-200\t1E-200", u"3\t1E10\t1E10"});
    EXPECT_TRUE(std::isinf(SumOfProducts(grid, 2, std::vector{1, 2})));
    EXPECT_EQ(grid.TextMatrix(2, 2), u"0");
    EXPECT_EQ(grid.TextMatrix(3, 2), u"1E+20");
}

TEST(Products, NumbersOfColumns) {
    struct {
        TextView text;
        int col;
    } const cases[] = {{u"3", 3}, {u" 4 ", 4}, {u"2.5", 2}, {u"3.5", 4}, {u"", 0}, {u"Qty", 0}, {u"-1", -1}};
    for (const auto& c : cases) EXPECT_EQ(ColumnNumber(c.text), c.col) << Narrow(c.text);
    EXPECT_EQ(ErrorOf([] { ColumnNumber(u"3E9"); }), 6);
}

// Random changes by everyone, beside totals that are added up anew.
TEST(ColumnTotals, FollowWhateverChanges) {
    std::mt19937 random(26);
    const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    flexgrid::Grid grid;
    ControlState state;
    state.footer = u";Sum-0;Count-1;Mean-2;None-3;";
    EditHistory history(grid);
    Fill(grid, {u"No\tSum\tCount\tMean\tNone", u"1\t0.1\tx\t1\t5", u"2\t0.2\t\t2\t5"});
    const CellFormats formats(grid, state);
    ColumnTotals totals(grid, state, formats);
    totals.Watch(true);
    EXPECT_EQ(u"0.3", totals.TextOf(1));
    EXPECT_EQ(u"1", totals.TextOf(2));
    EXPECT_EQ(u"1.5", totals.TextOf(3));
    EXPECT_EQ(u"10", totals.TextOf(4));
    EXPECT_EQ(u"", totals.TextOf(0));
    grid.SetFilteredRows({false, true, false});
    EXPECT_EQ(u"0.2", totals.TextOf(1));
    EXPECT_EQ(u"10", totals.TextOf(4)) << "of all rows";
    const auto write = [&](int row, int col, TextView text) {
        const Text before = grid.TextMatrix(row, col);
        grid.SetTextMatrix(row, col, text);
        history.CellChanged(grid.StructureVersion(), row, col, before, text);
    };
    const auto change = [&](int what) {
        const int rows = grid.Rows();
        const int row = 1 + below(rows - 1);
        const Text number = DoubleToText((below(2000) - 1000) / 100.0);
        switch (what) {
            case 0:
                return write(row, 1 + below(4), below(4) == 0 ? Text() : number);
            case 1:
                return grid.AddItem(u"9\t" + number + u"\t\t" + number, row);
            case 2:
                if (rows > 20) return grid.RemoveItem(row);
                grid.AddItems(Text(30, u'\r'));
                return;
            case 3: {
                const flexgrid::Grid::AllOrNothing whole(grid, flexgrid::Grid::AllOrNothing::Reach::texts);
                write(row, 1, number);
                totals.TextOf(1);
                return;  // and nothing has happened
            }
            case 4:
                grid.MoveTo(row, 1);
                return InsertRow(grid, state, history);
            case 5:
                history.Undo(state);
                return;
            case 6:
                return grid.SetColPosition(1 + below(4), 1 + below(4));
            case 7:
                return grid.SetRowPosition(below(std::min(rows, 3)), below(rows));
            case 8:
                grid.SetColumn(below(5), 1, row, [&](const flexgrid::RowView&) { return TextView(number); });
                return;
            case 9:
                return grid.SetTextMatrix(0, below(5), below(2) == 0 ? u"Mean" : u"None");
            case 10:
                if (rows < 9)
                    return below(2) == 0
                               ? grid.ShowAllRows()
                               : grid.SetFilteredRows(std::vector<bool>(static_cast<std::size_t>(rows), true));
                return grid.SetRowFiltered(row, !grid.RowFiltered(row));
            default:
                grid.SetRows(std::max(2, rows - below(5)));
        }
    };
    for (int step = 0; step < 4000; ++step) {
        change(below(12));
        if (below(3) == 0) continue;  // several changes before the totals are asked for
        ColumnTotals fresh(grid, state, formats);
        for (int col = 0; col < grid.Cols(); ++col) ASSERT_EQ(fresh.TextOf(col), totals.TextOf(col)) << step;
    }
}

}  // namespace
}  // namespace qvx::grid
