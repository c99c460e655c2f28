// Rows inserted, deleted, removed and cleared: what the grid holds afterwards.
#include "controls/grid/row_operations.h"

#include <gtest/gtest.h>

#include <functional>

#include "common/run_time_error.h"
#include "controls/grid/row_commands.h"
#include "tests/unit/flexgrid/grid_texts.h"
#include "tests/unit/grid/grid_fixture.h"

namespace qvx::grid {
namespace {

using flexgrid::ErrorOf;
using flexgrid::Shown;

class RowCommands : public EntryGridTest {};

TEST_F(RowCommands, InsertedRowIsNumberedAndTheRestMovesOn) {
    Fill(grid, {u"No\tA", u"1\ta", u"2\tb", u"x\tc"});
    state.autoRecordNumber = true;
    grid.MoveTo(2, 1);
    InsertRow(grid, state, history);
    EXPECT_EQ(Shown(grid), "No,A/1,a/2,/3,b/4,c");
    EXPECT_EQ(grid.Row(), 2);
    state.autoRecordNumber = false;
    InsertRow(grid, state, history);
    AppendRows(grid, state, history, 1);
    EXPECT_EQ(Shown(grid), "No,A/1,a/,/2,/3,b/4,c/,");
    grid.MoveTo(0, 1);
    EXPECT_THROW(InsertRow(grid, state, history), RunTimeError);
    EXPECT_EQ(grid.Rows(), 7);
}

TEST_F(RowCommands, DeletedRowIsTheCurrentOneAndTheLastIsOnlyEmptied) {
    Fill(grid, {u"No\tA", u"1\ta", u"2\tb"});
    state.autoRecordNumber = true;
    const std::tuple<int, std::function<void()>, const char*> commands[] = {
        {1, [&] { InsertRow(grid, state, history); }, "No,A/1,/2,a/3,b"},
        {2, [&] { EXPECT_EQ(DeleteRow(grid, state, history), 2); }, "No,A/1,/2,b"},
        {2, [&] { AppendRows(grid, state, history, 2); }, "No,A/1,/2,b/3,/4,"},
        {4, [&] { EXPECT_EQ(DeleteRow(grid, state, history), 4); }, "No,A/1,/2,b/3,"},
        {1, [&] { DeleteRow(grid, state, history); }, "No,A/1,b/2,"},
        {2, [&] { DeleteRow(grid, state, history); }, "No,A/1,b"},
        {1, [&] { EXPECT_EQ(DeleteRow(grid, state, history), 1); }, "No,A/1,"},
    };
    for (const auto& [row, command, shown] : commands) {
        grid.MoveTo(row, 1);
        command();
        EXPECT_EQ(Shown(grid), shown) << "of the last row only the record number stays";
    }
    history.Undo(state);
    EXPECT_EQ(Shown(grid), "No,A/1,b");
}

TEST_F(RowCommands, RefusedDeletionChangesNothing) {
    Fill(grid, {u"No\tA", u"1\ta", u"2\tb"});
    grid.SetFixedRows(2);
    EXPECT_THROW(DeleteRow(grid, state, history), RunTimeError);
    grid.SetFixedRows(1);
    grid.SetRows(1);
    EXPECT_THROW(DeleteRow(grid, state, history), RunTimeError) << "there is no row 1 to empty";
    EXPECT_EQ(Shown(grid), "No,A");
}

TEST(RemoveEmptyRows, WhatCountsAsEmpty) {
    // Columns: N (the record number), Name (text), Qty (digits), Rate (numerics).
    struct {
        const char* name;
        TextView row;
        bool byKey;
        int keyColumn;
        bool autoNumber;
        bool gone;
    } const cases[] = {
        {"nothing", u"\t\t\t", false, -1, false, true},
        {"blanks", u"\t   \t\t", false, -1, false, true},
        {"a no-break space is no blank", u"\t\u00A0\t\t", false, -1, false, false},
        {"0 in numeric columns", u"\t\t0\t0.00", false, -1, false, true},
        {"a number with a blank in it there", u"\t\t\t- 5", false, -1, false, false},
        {"letters there", u"\t\tabc\tkg 12", false, -1, false, true},
        {"0 in a text column", u"\t0\t\t", false, -1, false, false},
        {"a text beyond Latin-1", u"\t\u0416\t\t", false, -1, false, false},
        {"only a record number", u"7\t\t\t", false, -1, true, true},
        {"a number in column 0 that is no record number", u"7\t\t\t", false, -1, false, false},
        {"the key is empty, nothing else is", u"\t\t5\t5", true, 1, false, true},
        {"a blank is a key", u"\t \t\t", true, 1, false, false},
        {"a blank is no text", u"\t \t\t", false, 1, false, true},
        {"a 0 is a key", u"\t\t0\t", true, 2, false, false},
        {"a key column is asked for, there is none", u"\t\t5\t", true, -1, false, false},
        {"a key column that the grid does not have", u"\t\t\t", true, 9, false, false},
    };
    for (const auto& c : cases) {
        flexgrid::Grid grid;
        Fill(grid, {u"N\tName\tQty\tRate", u"1\tkept\t1\t1", c.row, u"3\tkept\t1\t1"});
        ControlState state;
        state.columnsDataType = u";qty-0;RATE-1;";
        state.keyColumn = c.keyColumn;
        state.autoRecordNumber = c.autoNumber;
        RemoveEmptyRows(grid, state, c.byKey);
        EXPECT_EQ(grid.Rows(), c.gone ? 3 : 4) << c.name;
        EXPECT_EQ(grid.TextMatrix(grid.Rows() - 1, 0), c.autoNumber ? u"2" : u"3") << c.name;
    }
}

TEST(RemoveEmptyRows, WhatIsLeft) {
    struct {
        const char* what;
        std::vector<TextView> rows;
        int fixed;
        const char* shown;
        int row;  // the current one, which was the last
    } const cases[] = {
        {"the first of nothing but empty rows", {u"N\tQty", u"7\t0", u"8\t"}, 1, "N,Qty/1,0", 1},
        {"that one alone", {u"N\tQty", u"7\t0"}, 1, "N,Qty/1,0", 1},
        {"fixed rows", {u"N\tName", u"1\t", u"2\t", u"3\ta", u"4\t", u"5\tb"}, 2, "N,Name/1,/2,a/3,b", 3},
        {"a row without cells", {u""}, 0, "", 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        flexgrid::Grid grid;
        Fill(grid, c.rows);
        grid.SetFixedRows(c.fixed);
        ControlState state;
        state.autoRecordNumber = true;
        state.columnsDataType = u";Qty-0;";
        if (c.fixed == 0) {
            grid.SetCols(0);
            grid.SetRows(3);
        }
        grid.SetRow(grid.Rows() - 1);
        grid.SetRowHeight(grid.Row(), 600);
        RemoveEmptyRows(grid, state, c.fixed == 1);
        EXPECT_EQ(Shown(grid), c.shown);
        EXPECT_EQ(grid.Row(), c.row);
        EXPECT_EQ(grid.RowHeight(c.row), c.fixed == 2 || c.rows.size() == 2 ? 600 : 240);
    }
    flexgrid::Grid empty;
    empty.SetFixedRows(0);
    empty.SetRows(0);
    RemoveEmptyRows(empty, {}, true);
    EXPECT_EQ(empty.Rows(), 0);
}

TEST(RemoveEmptyRows, RowsMayComeMeanwhile) {
    flexgrid::Grid grid;
    Fill(grid, {u"N\tName", u"1\ta", u"2\t", u"3\tb", u"4\t", u"5\t"});
    grid.MoveTo(5, 1);
    const flexgrid::Meddler meddler(grid, [](flexgrid::Grid& g) { g.AddItem(u"\tnew"); });
    ControlState state;
    state.autoRecordNumber = true;
    RemoveEmptyRows(grid, state, true);
    // The cursor left for the pass, and once more for the loop that took its place.
    EXPECT_EQ(Shown(grid).substr(0, 15), "N,Name/1,a/2,b/");
    for (int row = 1; row < grid.Rows(); ++row) {
        EXPECT_NE(grid.TextMatrix(row, 1), u"");
        EXPECT_EQ(Narrow(grid.TextMatrix(row, 0)), std::to_string(row));
    }
}

TEST(RemoveAllRecords, OneEmptyRowIsLeft) {
    for (const int rows : {1, 2, 5}) {
        flexgrid::Grid grid;
        Fill(grid, {u"N\tName\tQty"});
        for (int row = 1; row < rows; ++row) grid.AddItem(u"1\ta\t2");
        grid.SetFixedRows(rows > 1 ? 1 : 0);
        ControlState state;
        state.changed = true;
        EditHistory history(grid);
        history.CellChanged(grid.StructureVersion(), rows - 1, 1, u"x", TextView(u"a"));
        RemoveAllRecords(grid, state, history);
        EXPECT_FALSE(history.CanUndo()) << "a record that is not there any more";
        EXPECT_EQ(Shown(grid), rows > 1 ? "N,Name,Qty/1,," : "N,,") << "the fixed column keeps its text";
        EXPECT_FALSE(state.changed);
    }
}

TEST(ClearRow, WhichCellsAreEmptied) {
    struct {
        const char* name;
        TextView clearCols;
        TextView avoidCols;
        const char* row;
    } const cases[] = {
        {"everything but the fixed column", u"aLL", u"", "1,,,"},
        {"a column, in any case", u";qty;", u"", "1,a,,3"},
        {"a fixed column too, when it is listed", u";N;Name;", u"", ",,2,3"},
        {"no mark in front, no match", u"N;Qty;", u"", "1,a,,3"},
        {"nothing listed", u"", u"", "1,a,2,3"},
        {"all but some", u"All", u";Name;Rate;", "1,a,,3"},
        {"what is to be avoided wins over what is to be cleared", u";Name;", u";Qty;", "1,,2,"},
        {"a list that avoids nothing clears all the same", u";Name;", u"x", "1,,,"},
    };
    for (const auto& c : cases) {
        flexgrid::Grid grid;
        Fill(grid, {u"N\tName\tQty\tRate", u"0\tx\ty\tz", u"1\ta\t2\t3"});
        ClearRow(grid, 2, c.clearCols, c.avoidCols);
        EXPECT_EQ(Shown(grid), std::string("N,Name,Qty,Rate/0,x,y,z/") + c.row) << c.name;
    }
}

TEST(ClearRow, RowsThatAreNotThereRaiseTheGridsError) {
    flexgrid::Grid grid;
    Fill(grid, {u"N\tName", u"1\ta"});
    for (const int row : {-1, 2}) {
        EXPECT_EQ(ErrorOf([&] { ClearRow(grid, row, u"All", {}); }), 381) << row;
        EXPECT_NO_THROW(ClearRow(grid, row, u";none;", {})) << "no cell is touched";
    }
    ClearRow(grid, 0, u"All", {});
    EXPECT_EQ(Shown(grid), "N,/1,a") << "a header may be cleared";
}

}  // namespace
}  // namespace qvx::grid
